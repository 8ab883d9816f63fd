// The values a host parks on its LIB object by name (tklProperty): a
// settings cache, a connection, a flag its modules share. They live as
// long as the object and are never written anywhere.
#ifndef NORVIK50_SRC_CORE_PROPERTY_BAG_H_
#define NORVIK50_SRC_CORE_PROPERTY_BAG_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "norvik50/variant.h"

namespace norvik50 {

class PropertyBag {
 public:
  // The value kept under `name`; Empty when nothing is. Names compare as
  // registry value names do: "Conn", "CONN" and "conn" are one property.
  // Raises 5 for an empty name.
  Variant Get(std::u16string_view name) const;
  // Keeps `value` under `name`, replacing what was there. Empty forgets the
  // name, since reading it back gives Empty either way. Arrays are copied;
  // objects are kept by reference, alive until replaced or forgotten.
  // Raises 5 for an empty name.
  void Let(std::u16string_view name, Variant value);
  // The number of names that hold a value.
  std::size_t size() const noexcept { return values_.size(); }

 private:
  std::unordered_map<std::u16string, Variant> values_;  // by folded name
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_PROPERTY_BAG_H_
