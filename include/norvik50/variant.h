// The automation tagged value. A Variant holds one of the host runtime's
// types, tagged with its type code, or a one-dimensional array of Variants
// with an explicit lower bound, or a record such as typFileInfo.
//
// Values have value semantics: copying a Variant copies its array or record.
// Host objects are shared (copying a Variant that holds an object copies the
// reference, as the host runtime does).
#ifndef NORVIK50_VARIANT_H_
#define NORVIK50_VARIANT_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/values.h"

namespace norvik50 {

// Type codes of the automation value (the runtime's VarType numbers).
enum class VarType : uint16_t {
  kEmpty = 0,
  kNull = 1,
  kInteger = 2,
  kLong = 3,
  kSingle = 4,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kString = 8,
  kObject = 9,
  kError = 10,
  kBoolean = 11,
  kVariant = 12,
  kDataObject = 13,
  kDecimal = 14,
  kByte = 17,
  kRecord = 36,
  kArray = 0x2000,  // flag: combined with the element type
};

// The name the runtime's TypeName gives, e.g. "Integer", "String", "Variant()".
NORVIK50_EXPORT std::u16string_view VarTypeName(VarType type) noexcept;

// Objects the host hands to the library (collections, controls). The
// library only needs them to be identifiable and, where a member says so,
// to implement one of the small interfaces derived from this one.
class NORVIK50_EXPORT HostObject {
 public:
  virtual ~HostObject();
};

class Variant;
class SafeArray;
class Record;

// Error values carried in a Variant (the runtime's CVErr).
struct ErrorValue {
  int32_t code = 0;
  friend bool operator==(ErrorValue, ErrorValue) = default;
};

// 16-bit automation Boolean: True is -1, False is 0.
using VariantBool = int16_t;
inline constexpr VariantBool kTrue = -1;
inline constexpr VariantBool kFalse = 0;
constexpr VariantBool ToVariantBool(bool b) noexcept { return b ? kTrue : kFalse; }

class NORVIK50_EXPORT Variant {
 public:
  Variant() = default;  // Empty
  static Variant Null();
  Variant(int16_t v);
  Variant(int32_t v);
  Variant(float v);
  Variant(double v);
  Variant(Currency v);
  Variant(Date v);
  Variant(std::u16string v);
  Variant(std::u16string_view v);
  Variant(const char16_t* v);
  Variant(bool v);  // Boolean (stored as -1 / 0)
  Variant(const char* v) = delete;  // would silently become a Boolean
  Variant(ErrorValue v);
  Variant(Decimal v);
  Variant(uint8_t v);
  Variant(std::shared_ptr<HostObject> v);  // Object; nullptr is Nothing
  Variant(SafeArray v);
  Variant(Record v);
  // A Boolean holding `v` as it is (non-zero values other than -1 are kept).
  static Variant Boolean(VariantBool v);

  Variant(const Variant& other);
  Variant(Variant&& other) noexcept;
  Variant& operator=(const Variant& other);
  Variant& operator=(Variant&& other) noexcept;
  ~Variant();

  // The scalar type code; for arrays kArray | element type.
  VarType type() const noexcept;
  // The type code as the runtime's VarType returns it (8204 for a Variant array).
  int32_t var_type() const noexcept { return static_cast<int32_t>(type()); }

  bool is_empty() const noexcept { return tag_ == VarType::kEmpty; }
  bool is_null() const noexcept { return tag_ == VarType::kNull; }
  bool is_array() const noexcept { return tag_ == VarType::kArray; }
  bool is_string() const noexcept { return tag_ == VarType::kString; }
  bool is_object() const noexcept { return tag_ == VarType::kObject; }
  bool is_record() const noexcept { return tag_ == VarType::kRecord; }
  // Integer, Long, Single, Double, Currency, Decimal or Byte.
  bool is_numeric() const noexcept;

  // Typed access; each raises type mismatch (13) when the tag differs.
  int16_t as_integer() const;
  int32_t as_long() const;
  float as_single() const;
  double as_double() const;
  Currency as_currency() const;
  Date as_date() const;
  const std::u16string& as_string() const;
  std::u16string& as_string();
  VariantBool as_boolean() const;
  ErrorValue as_error() const;
  Decimal as_decimal() const;
  uint8_t as_byte() const;
  const std::shared_ptr<HostObject>& as_object() const;
  const SafeArray& as_array() const;
  SafeArray& as_array();
  const Record& as_record() const;
  Record& as_record();

  // The value of a numeric, Date or Boolean Variant as a double; nullopt for
  // every other type. Used by comparisons that work by value.
  std::optional<double> numeric_value() const noexcept;

 private:
  // Booleans are 16-bit like Integers; a distinct payload type keeps them apart.
  struct BoolValue {
    VariantBool value;
  };
  using Payload =
      std::variant<std::monostate, int16_t, int32_t, float, double, Currency,
                   Date, std::u16string, BoolValue, ErrorValue, Decimal,
                   uint8_t, std::shared_ptr<HostObject>,
                   std::unique_ptr<SafeArray>, std::unique_ptr<Record>>;
  Variant(VarType tag, Payload payload);
  static Payload Clone(const Payload& p);
  [[noreturn]] void Mismatch() const;

  VarType tag_ = VarType::kEmpty;
  Payload payload_;
};

// A one-dimensional array with explicit bounds. An unbounded array was
// declared but never dimensioned: asking for its bounds raises subscript out
// of range (9). A bounded array may have no elements (upper = lower - 1).
class NORVIK50_EXPORT SafeArray {
 public:
  // An unbounded (never dimensioned) array of `element_type`.
  explicit SafeArray(VarType element_type = VarType::kVariant);
  // A bounded array lower..lower+size-1 of Empty (or "" for String arrays).
  SafeArray(int32_t lower, std::vector<Variant> items,
            VarType element_type = VarType::kVariant);
  static SafeArray Bounded(int32_t lower, int32_t upper,
                           VarType element_type = VarType::kVariant);

  VarType element_type() const noexcept { return element_type_; }
  bool is_bounded() const noexcept { return bounded_; }
  // Bounds; raise 9 for an unbounded array.
  int32_t lbound() const;
  int32_t ubound() const;
  std::size_t size() const noexcept { return items_.size(); }

  // Element at runtime index `index` (lbound..ubound); raises 9 outside.
  const Variant& at(int64_t index) const;
  Variant& at(int64_t index);

  std::vector<Variant>& items() noexcept { return items_; }
  const std::vector<Variant>& items() const noexcept { return items_; }

 private:
  VarType element_type_;
  bool bounded_ = false;
  int32_t lower_ = 0;
  std::vector<Variant> items_;
};

// A user-defined type (record) such as typFileInfo: a type name and its
// fields in declaration order.
class NORVIK50_EXPORT Record {
 public:
  Record() = default;
  Record(std::string type_name,
         std::vector<std::pair<std::string, Variant>> fields);

  const std::string& type_name() const noexcept { return type_name_; }
  const std::vector<std::pair<std::string, Variant>>& fields() const noexcept {
    return fields_;
  }
  // The field named `name` (exact), or nullptr.
  const Variant* find(std::string_view name) const noexcept;
  Variant* find(std::string_view name) noexcept;

 private:
  std::string type_name_;
  std::vector<std::pair<std::string, Variant>> fields_;
};

}  // namespace norvik50

#endif  // NORVIK50_VARIANT_H_
