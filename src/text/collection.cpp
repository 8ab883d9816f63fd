#include "norvik50/collection.h"

#include <utility>

#include "norvik50/error.h"

namespace norvik50 {

Collection::~Collection() = default;

void Collection::Add(Variant item) { items_.push_back(std::move(item)); }

const Variant& Collection::Item(int32_t index) const {
  if (index < 1 || index > Count()) Raise(kErrSubscript);
  return items_[static_cast<std::size_t>(index - 1)];
}

Variant& Collection::Item(int32_t index) {
  return const_cast<Variant&>(static_cast<const Collection&>(*this).Item(index));
}

void Collection::Remove(int32_t index) {
  if (index < 1 || index > Count()) Raise(kErrSubscript);
  items_.erase(items_.begin() + (index - 1));
}

}  // namespace norvik50
