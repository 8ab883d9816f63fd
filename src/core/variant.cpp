#include "norvik50/variant.h"

#include <limits>

#include "norvik50/error.h"

namespace norvik50 {

HostObject::~HostObject() = default;

std::u16string_view VarTypeName(VarType type) noexcept {
  if ((static_cast<uint16_t>(type) & static_cast<uint16_t>(VarType::kArray)) != 0) {
    switch (static_cast<VarType>(static_cast<uint16_t>(type) & 0x0FFF)) {
      case VarType::kString: return u"String()";
      case VarType::kInteger: return u"Integer()";
      case VarType::kLong: return u"Long()";
      case VarType::kDouble: return u"Double()";
      default: return u"Variant()";
    }
  }
  switch (type) {
    case VarType::kEmpty: return u"Empty";
    case VarType::kNull: return u"Null";
    case VarType::kInteger: return u"Integer";
    case VarType::kLong: return u"Long";
    case VarType::kSingle: return u"Single";
    case VarType::kDouble: return u"Double";
    case VarType::kCurrency: return u"Currency";
    case VarType::kDate: return u"Date";
    case VarType::kString: return u"String";
    case VarType::kObject: return u"Object";
    case VarType::kError: return u"Error";
    case VarType::kBoolean: return u"Boolean";
    case VarType::kVariant: return u"Variant";
    case VarType::kDataObject: return u"Unknown";
    case VarType::kDecimal: return u"Decimal";
    case VarType::kByte: return u"Byte";
    case VarType::kRecord: return u"Record";
    default: return u"Unknown";
  }
}

// ---- Variant --------------------------------------------------------------

Variant::Variant(VarType tag, Payload payload) : tag_(tag), payload_(std::move(payload)) {}

Variant Variant::Null() { return Variant(VarType::kNull, std::monostate{}); }
Variant::Variant(int16_t v) : tag_(VarType::kInteger), payload_(v) {}
Variant::Variant(int32_t v) : tag_(VarType::kLong), payload_(v) {}
Variant::Variant(float v) : tag_(VarType::kSingle), payload_(v) {}
Variant::Variant(double v) : tag_(VarType::kDouble), payload_(v) {}
Variant::Variant(Currency v) : tag_(VarType::kCurrency), payload_(v) {}
Variant::Variant(Date v) : tag_(VarType::kDate), payload_(v) {}
Variant::Variant(std::u16string v) : tag_(VarType::kString), payload_(std::move(v)) {}
Variant::Variant(std::u16string_view v) : Variant(std::u16string(v)) {}
Variant::Variant(const char16_t* v) : Variant(std::u16string(v)) {}
Variant::Variant(bool v) : tag_(VarType::kBoolean), payload_(BoolValue{ToVariantBool(v)}) {}
Variant::Variant(ErrorValue v) : tag_(VarType::kError), payload_(v) {}
Variant::Variant(Decimal v) : tag_(VarType::kDecimal), payload_(v) {}
Variant::Variant(uint8_t v) : tag_(VarType::kByte), payload_(v) {}
Variant::Variant(std::shared_ptr<HostObject> v)
    : tag_(VarType::kObject), payload_(std::move(v)) {}
Variant::Variant(SafeArray v)
    : tag_(VarType::kArray), payload_(std::make_unique<SafeArray>(std::move(v))) {}
Variant::Variant(Record v)
    : tag_(VarType::kRecord), payload_(std::make_unique<Record>(std::move(v))) {}
Variant Variant::Boolean(VariantBool v) {
  // Stored as given: a few members return a non-zero value other than -1
  // (the folder attribute 16) as their Boolean, and hosts test for non-zero.
  return Variant(VarType::kBoolean, BoolValue{v});
}

Variant::Payload Variant::Clone(const Payload& p) {
  if (auto* a = std::get_if<std::unique_ptr<SafeArray>>(&p)) {
    return std::make_unique<SafeArray>(**a);
  }
  if (auto* r = std::get_if<std::unique_ptr<Record>>(&p)) {
    return std::make_unique<Record>(**r);
  }
  return std::visit(
      [](const auto& v) -> Payload {
        using T = std::decay_t<decltype(v)>;
        if constexpr (std::is_same_v<T, std::unique_ptr<SafeArray>> ||
                      std::is_same_v<T, std::unique_ptr<Record>>) {
          return Payload{};  // handled above
        } else {
          return v;
        }
      },
      p);
}

Variant::Variant(const Variant& other) : tag_(other.tag_), payload_(Clone(other.payload_)) {}
Variant::Variant(Variant&& other) noexcept
    : tag_(other.tag_), payload_(std::move(other.payload_)) {
  other.tag_ = VarType::kEmpty;
  other.payload_ = std::monostate{};
}
Variant& Variant::operator=(const Variant& other) {
  if (this != &other) {
    Payload copy = Clone(other.payload_);
    tag_ = other.tag_;
    payload_ = std::move(copy);
  }
  return *this;
}
Variant& Variant::operator=(Variant&& other) noexcept {
  if (this != &other) {
    tag_ = other.tag_;
    payload_ = std::move(other.payload_);
    other.tag_ = VarType::kEmpty;
    other.payload_ = std::monostate{};
  }
  return *this;
}
Variant::~Variant() = default;

VarType Variant::type() const noexcept {
  if (tag_ == VarType::kArray) {
    return static_cast<VarType>(static_cast<uint16_t>(VarType::kArray) |
                                static_cast<uint16_t>(
                                    std::get<std::unique_ptr<SafeArray>>(payload_)->element_type()));
  }
  return tag_;
}

bool Variant::is_numeric() const noexcept {
  switch (tag_) {
    case VarType::kInteger: case VarType::kLong: case VarType::kSingle:
    case VarType::kDouble: case VarType::kCurrency: case VarType::kDecimal:
    case VarType::kByte:
      return true;
    default:
      return false;
  }
}

void Variant::Mismatch() const { Raise(kErrTypeMismatch); }

#define NORVIK50_TYPED_GET(Type, tag, Method)              \
  Type Variant::Method() const {                          \
    if (tag_ != VarType::tag) Mismatch();                 \
    return std::get<Type>(payload_);                      \
  }
NORVIK50_TYPED_GET(int16_t, kInteger, as_integer)
NORVIK50_TYPED_GET(int32_t, kLong, as_long)
NORVIK50_TYPED_GET(float, kSingle, as_single)
NORVIK50_TYPED_GET(double, kDouble, as_double)
NORVIK50_TYPED_GET(Currency, kCurrency, as_currency)
NORVIK50_TYPED_GET(Date, kDate, as_date)
NORVIK50_TYPED_GET(ErrorValue, kError, as_error)
NORVIK50_TYPED_GET(Decimal, kDecimal, as_decimal)
NORVIK50_TYPED_GET(uint8_t, kByte, as_byte)
#undef NORVIK50_TYPED_GET

VariantBool Variant::as_boolean() const {
  if (tag_ != VarType::kBoolean) Mismatch();
  return std::get<BoolValue>(payload_).value;
}

const std::u16string& Variant::as_string() const {
  if (tag_ != VarType::kString) Mismatch();
  return std::get<std::u16string>(payload_);
}
std::u16string& Variant::as_string() {
  if (tag_ != VarType::kString) Mismatch();
  return std::get<std::u16string>(payload_);
}
const std::shared_ptr<HostObject>& Variant::as_object() const {
  if (tag_ != VarType::kObject) Mismatch();
  return std::get<std::shared_ptr<HostObject>>(payload_);
}
const SafeArray& Variant::as_array() const {
  if (tag_ != VarType::kArray) Mismatch();
  return *std::get<std::unique_ptr<SafeArray>>(payload_);
}
SafeArray& Variant::as_array() {
  if (tag_ != VarType::kArray) Mismatch();
  return *std::get<std::unique_ptr<SafeArray>>(payload_);
}
const Record& Variant::as_record() const {
  if (tag_ != VarType::kRecord) Mismatch();
  return *std::get<std::unique_ptr<Record>>(payload_);
}
Record& Variant::as_record() {
  if (tag_ != VarType::kRecord) Mismatch();
  return *std::get<std::unique_ptr<Record>>(payload_);
}

std::optional<double> Variant::numeric_value() const noexcept {
  switch (tag_) {
    case VarType::kInteger: return std::get<int16_t>(payload_);
    case VarType::kLong: return std::get<int32_t>(payload_);
    case VarType::kSingle: return std::get<float>(payload_);
    case VarType::kDouble: return std::get<double>(payload_);
    case VarType::kCurrency: return std::get<Currency>(payload_).ToDouble();
    case VarType::kDate: return std::get<Date>(payload_).serial;
    case VarType::kBoolean: return std::get<BoolValue>(payload_).value;
    case VarType::kDecimal: return std::get<Decimal>(payload_).ToDouble();
    case VarType::kByte: return std::get<uint8_t>(payload_);
    default: return std::nullopt;
  }
}

// ---- SafeArray ------------------------------------------------------------

SafeArray::SafeArray(VarType element_type) : element_type_(element_type) {}

SafeArray::SafeArray(int32_t lower, std::vector<Variant> items, VarType element_type)
    : element_type_(element_type), bounded_(true), lower_(lower), items_(std::move(items)) {}

SafeArray SafeArray::Bounded(int32_t lower, int32_t upper, VarType element_type) {
  const int64_t count = static_cast<int64_t>(upper) - lower + 1;
  if (count < 0) Raise(kErrSubscript);
  const Variant blank =
      element_type == VarType::kString ? Variant(std::u16string()) : Variant();
  return SafeArray(lower, std::vector<Variant>(static_cast<std::size_t>(count), blank),
                   element_type);
}

int32_t SafeArray::lbound() const {
  if (!bounded_) Raise(kErrSubscript);
  return lower_;
}

int32_t SafeArray::ubound() const {
  if (!bounded_) Raise(kErrSubscript);
  return static_cast<int32_t>(static_cast<int64_t>(lower_) +
                              static_cast<int64_t>(items_.size()) - 1);
}

const Variant& SafeArray::at(int64_t index) const {
  if (!bounded_ || index < lower_ ||
      index - lower_ >= static_cast<int64_t>(items_.size())) {
    Raise(kErrSubscript);
  }
  return items_[static_cast<std::size_t>(index - lower_)];
}

Variant& SafeArray::at(int64_t index) {
  return const_cast<Variant&>(static_cast<const SafeArray&>(*this).at(index));
}

// ---- Record ---------------------------------------------------------------

Record::Record(std::string type_name, std::vector<std::pair<std::string, Variant>> fields)
    : type_name_(std::move(type_name)), fields_(std::move(fields)) {}

const Variant* Record::find(std::string_view name) const noexcept {
  for (const auto& [field, value] : fields_) {
    if (field == name) return &value;
  }
  return nullptr;
}

Variant* Record::find(std::string_view name) noexcept {
  return const_cast<Variant*>(static_cast<const Record&>(*this).find(name));
}

}  // namespace norvik50
