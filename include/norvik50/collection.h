// An ordered collection of values that hosts hand to the library, for
// example to tklClearCollection. Items are addressed by 1-based position,
// as the host runtime's collections are. It travels in a Variant as an
// Object (Variant(std::make_shared<Collection>())).
//
// Thread safety: none; a collection belongs to the thread that uses it.
#ifndef NORVIK50_COLLECTION_H_
#define NORVIK50_COLLECTION_H_

#include <cstdint>
#include <deque>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

class NORVIK50_EXPORT Collection : public HostObject {
 public:
  Collection() = default;
  ~Collection() override;

  // Number of items; 0 for a new collection.
  int32_t Count() const noexcept { return static_cast<int32_t>(items_.size()); }
  // Appends `item` at position Count() + 1.
  void Add(Variant item);
  // The item at 1-based `index`; raises subscript out of range (9) outside
  // 1..Count().
  const Variant& Item(int32_t index) const;
  Variant& Item(int32_t index);
  // Removes the item at 1-based `index`; later items move up by one.
  // Raises 9 outside 1..Count(). Removing position 1 is constant time.
  void Remove(int32_t index);

 private:
  std::deque<Variant> items_;
};

}  // namespace norvik50

#endif  // NORVIK50_COLLECTION_H_
