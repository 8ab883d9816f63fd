#include "text/variant_values.h"

#include <exception>
#include <optional>

#include "norvik50/collection.h"
#include "norvik50/error.h"

namespace norvik50 {
namespace {

// Empty, numbers, dates, Booleans and strings can be compared; anything else
// (errors, objects, arrays, records) makes the comparison fail.
bool Comparable(const Variant& v) {
  return v.is_empty() || v.is_string() || v.numeric_value().has_value();
}

double NumberOf(const Variant& v) {
  const std::optional<double> number = v.numeric_value();
  if (!number) Raise(kErrTypeMismatch);
  return *number;
}

// Equality of two tagged values as the runtime's "=" decides it.
bool ValuesEqual(const Variant& a, const Variant& b) {
  if (a.is_null() || b.is_null()) return false;
  if (!Comparable(a) || !Comparable(b)) Raise(kErrTypeMismatch);
  if (a.is_empty() && b.is_empty()) return true;
  if (a.is_empty() || b.is_empty()) {
    const Variant& other = a.is_empty() ? b : a;
    return other.is_string() ? other.as_string().empty() : NumberOf(other) == 0.0;
  }
  if (a.is_string() != b.is_string()) return false;
  if (a.is_string()) return a.as_string() == b.as_string();
  return NumberOf(a) == NumberOf(b);
}

}  // namespace

Variant GetNotNullValue(const Variant& value) {
  return value.is_null() ? Variant() : value;
}

bool IsEmptyValue(const Variant& value) {
  switch (value.type()) {
    case VarType::kEmpty:
    case VarType::kNull:
      return true;
    case VarType::kInteger:
    case VarType::kLong:
    case VarType::kSingle:
    case VarType::kDouble:
    case VarType::kCurrency:
    case VarType::kDate:
      return value.numeric_value().value_or(1.0) == 0.0;
    case VarType::kString:
      return value.as_string().empty();
    default:
      return false;
  }
}

// The loop deliberately starts at index 0 whatever the lower bound: a list
// based at 1 fails on its first access and the member answers False, as
// hosts have always seen it do.
bool IsInList(const Variant& value, const Variant& list) {
  try {
    if (!list.is_array()) return false;
    const SafeArray& items = list.as_array();
    const int64_t upper = items.ubound();
    for (int64_t i = 0; i <= upper; ++i) {
      if (ValuesEqual(items.at(i), value)) return true;
    }
    return false;
  } catch (const std::exception&) {
    return false;
  }
}

bool ArrayHasData(const Variant& value) {
  // An array declared but never dimensioned has no upper bound to ask for.
  return value.is_array() && value.as_array().is_bounded();
}

void ClearCollection(std::shared_ptr<HostObject>& collection, bool set_to_nothing) {
  try {
    auto* items = dynamic_cast<Collection*>(collection.get());
    if (items == nullptr) return;  // nothing to ask for a count: end quietly
    const int32_t count = items->Count();
    for (int32_t k = 0; k < count; ++k) items->Remove(1);
    if (set_to_nothing) collection.reset();
  } catch (const std::exception&) {
  }
}

}  // namespace norvik50
