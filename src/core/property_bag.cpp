#include "core/property_bag.h"

#include <utility>

#include "core/name_fold.h"
#include "norvik50/error.h"

namespace norvik50 {
namespace {

// A property without a name would be a slot no caller could tell apart
// from a forgotten argument; refusing it finds that mistake at once.
std::u16string FoldedName(std::u16string_view name) {
  if (name.empty()) {
    throw Error(kErrInvalidCall, u"A property needs a name", std::u16string(kErrorSource));
  }
  return FoldName(name);
}

}  // namespace

Variant PropertyBag::Get(std::u16string_view name) const {
  const auto it = values_.find(FoldedName(name));
  return it != values_.end() ? it->second : Variant();
}

void PropertyBag::Let(std::u16string_view name, Variant value) {
  std::u16string key = FoldedName(name);
  if (value.is_empty()) {
    values_.erase(key);
    return;
  }
  values_.insert_or_assign(std::move(key), std::move(value));
}

}  // namespace norvik50
