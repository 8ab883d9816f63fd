#include "text/variant_values.h"

#include <exception>
#include <optional>

#include "norvik50/collection.h"
#include "norvik50/error.h"

namespace norvik50 {
namespace {

// What equality needs to know of a value, read once: the list loop
// compares one value with many elements.
struct Comparand {
  bool null = false;
  bool empty = false;
  const std::u16string* text = nullptr;  // for strings
  std::optional<double> number;          // numbers, dates, Booleans
};

Comparand Describe(const Variant& v) {
  Comparand c;
  if (v.is_null()) {
    c.null = true;
  } else if (v.is_empty()) {
    c.empty = true;
  } else if (v.is_string()) {
    c.text = &v.as_string();
  } else {
    c.number = v.numeric_value();
    // Errors, objects, arrays and records make the comparison fail.
    if (!c.number) Raise(kErrTypeMismatch);
  }
  return c;
}

// Equality of two tagged values as the runtime's "=" decides it.
bool Equal(const Comparand& a, const Comparand& b) {
  if (a.null || b.null) return false;
  if (a.empty && b.empty) return true;
  if (a.empty || b.empty) {
    const Comparand& other = a.empty ? b : a;
    return other.text != nullptr ? other.text->empty() : *other.number == 0.0;
  }
  if ((a.text != nullptr) != (b.text != nullptr)) return false;  // number vs string
  if (a.text != nullptr) return *a.text == *b.text;
  return *a.number == *b.number;
}

}  // namespace

Variant GetNotNullValue(const Variant& value) { return value.is_null() ? Variant() : value; }

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
    const Comparand wanted = Describe(value);
    for (int64_t i = 0; i <= upper; ++i) {
      if (Equal(Describe(items.at(i)), wanted)) return true;
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
