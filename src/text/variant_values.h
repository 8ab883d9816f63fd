// Values, lists and arrays: the small members hosts use around database
// values, Variant arrays and collections.
#ifndef NORVIK50_SRC_TEXT_VARIANT_VALUES_H_
#define NORVIK50_SRC_TEXT_VARIANT_VALUES_H_

#include <memory>

#include "norvik50/variant.h"

namespace norvik50 {

// Empty for a Null, `value` unchanged otherwise.
Variant GetNotNullValue(const Variant& value);

// True for Empty and Null, for a number or date equal to 0 and for the
// empty string; False for every other type (Boolean, Byte, Decimal,
// objects, arrays), whatever it holds.
bool IsEmptyValue(const Variant& value);

// Whether an element of `list` at index 0 up to its upper bound equals
// `value`: numbers (dates included) by value, strings exactly, never a
// number and a string; Empty equals 0 and ""; Null equals nothing. A list
// that does not start at or below 0, a value that cannot be compared or a
// non-array give False. Never fails.
bool IsInList(const Variant& value, const Variant& list);

// Whether `value` is an array that has bounds (even with no elements).
bool ArrayHasData(const Variant& value);

// Empties a Collection by removing its first item as often as it had items,
// then drops the caller's reference when `set_to_nothing`. No object, or
// an object that is no Collection, ends it quietly (and keeps the
// reference). Never fails.
void ClearCollection(std::shared_ptr<HostObject>& collection, bool set_to_nothing);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_VARIANT_VALUES_H_
