#include "norvik50/dispatch.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "core/invoke.h"
#include "core/number_text.h"
#include "norvik50/error.h"
#include "norvik50/locale.h"

namespace norvik50 {
namespace {

constexpr int32_t kErrInvalidUseOfNull = 94;

std::string Lower(std::string_view name) {
  std::string out(name);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return out;
}

// Integer targets take the value rounded half to even, as the runtime's
// CInt and CLng do (2.5 -> 2, 3.5 -> 4).
int64_t RoundToInteger(double v, double min, double max) {
  const double r = std::nearbyint(v);
  if (!(r >= min && r <= max)) Raise(kErrOverflow);
  return static_cast<int64_t>(r);
}

double NumberFrom(const Variant& value) {
  if (value.is_empty()) return 0;
  if (value.is_null()) Raise(kErrInvalidUseOfNull);
  if (auto n = value.numeric_value()) return *n;
  if (value.is_string()) {
    const std::u16string& s = value.as_string();
    if (auto n = ParsePlainNumber(s, CurrentLocale().decimal)) return *n;
    // Booleans arrive as text from some hosts.
    std::u16string lower;
    for (char16_t c : s) lower.push_back(c < 0x80 ? static_cast<char16_t>(std::tolower(c)) : c);
    if (lower == u"true") return -1;
    if (lower == u"false") return 0;
  }
  Raise(kErrTypeMismatch);
}

std::u16string TextFrom(const Variant& value) {
  const char16_t decimal = CurrentLocale().decimal;
  switch (value.type()) {
    case VarType::kEmpty:
      return u"";
    case VarType::kNull:
      Raise(kErrInvalidUseOfNull);
    case VarType::kString:
      return value.as_string();
    case VarType::kInteger:
      return DoubleToText(value.as_integer(), decimal);
    case VarType::kLong:
      return DoubleToText(value.as_long(), decimal);
    case VarType::kByte:
      return DoubleToText(value.as_byte(), decimal);
    case VarType::kSingle:
      return SingleToText(value.as_single(), decimal);
    case VarType::kDouble:
      return DoubleToText(value.as_double(), decimal);
    case VarType::kCurrency:
      return CurrencyToText(value.as_currency(), decimal);
    case VarType::kDecimal:
      return DecimalToText(value.as_decimal(), decimal);
    case VarType::kDate:
      return DateToText(value.as_date());
    case VarType::kBoolean:
      return value.as_boolean() ? u"True" : u"False";
    default:
      Raise(kErrTypeMismatch);
  }
}

}  // namespace

// ---- CallArgs -------------------------------------------------------------

CallArgs::CallArgs(std::vector<std::optional<Variant>> values) : values_(std::move(values)) {}

bool CallArgs::has(std::size_t i) const noexcept {
  return i < values_.size() && values_[i].has_value();
}

const Variant& CallArgs::operator[](std::size_t i) const {
  if (!has(i)) Raise(kErrArgNotOptional);
  return *values_[i];
}

Variant& CallArgs::at(std::size_t i) {
  if (i >= values_.size()) Raise(kErrArgNotOptional);
  if (!values_[i]) values_[i].emplace();
  return *values_[i];
}

// ---- MemberTable ----------------------------------------------------------

void MemberTable::Add(MemberInfo info) {
  index_[Lower(info.name)].push_back(members_.size());
  members_.push_back(std::move(info));
}

const MemberInfo* MemberTable::Find(std::string_view name, MemberKind kind) const {
  const auto it = index_.find(Lower(name));
  if (it == index_.end()) return nullptr;
  for (std::size_t i : it->second) {
    if (members_[i].kind == kind) return &members_[i];
  }
  return nullptr;
}

bool MemberTable::Has(std::string_view name) const { return index_.count(Lower(name)) != 0; }

// ---- Coercion -------------------------------------------------------------

Variant CoerceTo(const Variant& value, VarType type) {
  if (type == VarType::kVariant || value.type() == type) return value;
  switch (type) {
    case VarType::kArray:
      if (!value.is_array()) Raise(kErrTypeMismatch);
      return value;
    case VarType::kRecord:
      if (!value.is_record()) Raise(kErrTypeMismatch);
      return value;
    case VarType::kObject:
      if (!value.is_object()) Raise(kErrTypeMismatch);
      return value;
    case VarType::kString:
      return Variant(TextFrom(value));
    case VarType::kInteger:
      return Variant(static_cast<int16_t>(RoundToInteger(NumberFrom(value), -32768, 32767)));
    case VarType::kLong:
      return Variant(
          static_cast<int32_t>(RoundToInteger(NumberFrom(value), -2147483648.0, 2147483647.0)));
    case VarType::kByte:
      // True is -1 and a Byte keeps its low byte.
      if (value.type() == VarType::kBoolean)
        return Variant(static_cast<uint8_t>(value.as_boolean() ? 255 : 0));
      return Variant(static_cast<uint8_t>(RoundToInteger(NumberFrom(value), 0, 255)));
    case VarType::kSingle: {
      const double v = NumberFrom(value);
      if (std::fabs(v) > FLT_MAX) Raise(kErrOverflow);
      return Variant(static_cast<float>(v));
    }
    case VarType::kDouble:
      return Variant(NumberFrom(value));
    case VarType::kCurrency:
      if (value.is_string()) {
        // Exact for the decimal text a host writes; no detour through double.
        std::u16string text = value.as_string();
        std::replace(text.begin(), text.end(), CurrentLocale().decimal, u'.');
        if (auto c = Currency::Parse(std::string(text.begin(), text.end()))) return Variant(*c);
      }
      if (value.type() == VarType::kDecimal)
        return Variant(Currency::FromDecimal(value.as_decimal()));
      return Variant(Currency::FromDouble(NumberFrom(value)));
    case VarType::kDecimal:
      // A Single keeps its own 7 digits, a Currency all of its four places.
      if (value.type() == VarType::kSingle) return Variant(Decimal::FromSingle(value.as_single()));
      if (value.type() == VarType::kCurrency) {
        if (auto d = Decimal::Parse(value.as_currency().ToString())) return Variant(*d);
      }
      return Variant(Decimal::FromDouble(NumberFrom(value)));
    case VarType::kBoolean:
      return Variant(NumberFrom(value) != 0);
    case VarType::kDate: {
      if (value.is_string()) {
        const std::u16string& s = value.as_string();
        if (auto d = Date::ParseIso(std::string(s.begin(), s.end()))) return Variant(*d);
      }
      const double serial = NumberFrom(value);
      if (!(serial >= Date::kMinSerial && serial <= Date::kMaxSerial)) Raise(kErrOverflow);
      return Variant(Date{serial});
    }
    default:
      Raise(kErrTypeMismatch);
  }
}

// ---- Invoke ---------------------------------------------------------------

InvokeResult InvokeMember(const MemberTable& table, LIB& lib, std::string_view member,
                          std::vector<std::optional<Variant>> args, bool let,
                          ArgumentCoercion coerce) {
  const MemberInfo* info = nullptr;
  if (let) {
    info = table.Find(member, MemberKind::kPropertyLet);
  } else {
    info = table.Find(member, MemberKind::kMethod);
    if (info == nullptr) info = table.Find(member, MemberKind::kPropertyGet);
  }
  if (info == nullptr) {
    if (const UnavailableMember* out = FindUnavailableMember(member)) {
      throw Error(kErrNoSuchMember, std::u16string(out->reason), std::u16string(kErrorSource));
    }
    Raise(kErrNoSuchMember);
  }
  if (args.size() > info->params.size()) Raise(kErrWrongArgCount);
  args.resize(info->params.size());

  for (std::size_t i = 0; i < info->params.size(); ++i) {
    const ParamInfo& param = info->params[i];
    std::optional<Variant>& arg = args[i];
    if (!arg) {
      if (!param.optional) Raise(kErrArgNotOptional);
      if (param.default_value) arg = *param.default_value;
      continue;
    }
    arg = coerce(*arg, param.type);
    if (!param.record_type.empty() && arg->as_record().type_name() != param.record_type) {
      Raise(kErrTypeMismatch);
    }
  }

  CallArgs call_args(std::move(args));
  Variant result = info->body(lib, call_args);
  InvokeResult out;
  if (info->result != VarType::kEmpty) out.result = std::move(result);
  for (std::size_t i : call_args.written()) {
    if (i < info->params.size() && info->params[i].by_ref && call_args.has(i)) {
      out.by_ref[i] = call_args[i];
    }
  }
  return out;
}

}  // namespace norvik50
