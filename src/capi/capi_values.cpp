// Scalar and string values of the C interface: constructors and readers.
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "capi/capi_support.h"
#include "norvik50/encoding.h"

namespace norvik50::capi {
namespace {

constexpr uint8_t kMaxDecimalScale = 28;

// Reads a value of one type: 13 for another type, never a conversion.
template <typename Read>
int32_t ReadAs(const norvik50_value* v, VarType type, Read&& read) noexcept {
  return Guarded(nullptr, [&] {
    const Variant& value = Deref(v);
    if (value.type() != type) Raise(kErrTypeMismatch);
    read(value);
  });
}

template <typename T>
void Store(T* out, T value) {
  if (out == nullptr) Raise(kErrInvalidCall);
  *out = value;
}

// Well-formed UTF-8 only: ICU refuses ill-formed sequences and encoded
// surrogates, where the library's lenient decoder would substitute.
std::u16string StrictFromUtf8(const char* text, size_t length) {
  if (text == nullptr) {
    if (length == 0 || length == static_cast<size_t>(-1)) return {};
    Raise(kErrInvalidCall);
  }
  if (length == static_cast<size_t>(-1)) length = std::strlen(text);
  if (length > INT32_MAX) Raise(kErrInvalidCall);
  // ASCII is UTF-8 as it stands, and most text a host passes is ASCII:
  // widened directly, it skips ICU's two passes.
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  if (std::all_of(bytes, bytes + length, [](unsigned char c) { return c < 0x80; })) {
    return std::u16string(bytes, bytes + length);
  }
  UErrorCode status = U_ZERO_ERROR;
  int32_t units = 0;
  u_strFromUTF8(nullptr, 0, &units, text, static_cast<int32_t>(length), &status);
  if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status)) Raise(kErrInvalidCall);
  std::u16string out(static_cast<size_t>(units), u'\0');
  status = U_ZERO_ERROR;
  u_strFromUTF8(out.data(), units, nullptr, text, static_cast<int32_t>(length), &status);
  if (U_FAILURE(status)) Raise(kErrInvalidCall);
  return out;
}

}  // namespace

std::u16string Utf8Argument(const char* text) {
  if (text == nullptr) Raise(kErrInvalidCall);
  return StrictFromUtf8(text, static_cast<size_t>(-1));
}

}  // namespace norvik50::capi

using norvik50::Variant;
using norvik50::VarType;
using namespace norvik50::capi;

extern "C" {

norvik50_value* norvik50_value_new_empty(void) {
  return Constructed([] { return Variant(); });
}
norvik50_value* norvik50_value_new_null(void) {
  return Constructed([] { return Variant::Null(); });
}
norvik50_value* norvik50_value_new_integer(int16_t v) {
  return Constructed([v] { return Variant(v); });
}
norvik50_value* norvik50_value_new_long(int32_t v) {
  return Constructed([v] { return Variant(v); });
}
norvik50_value* norvik50_value_new_single(float v) {
  return Constructed([v] { return Variant(v); });
}
norvik50_value* norvik50_value_new_double(double v) {
  return Constructed([v] { return Variant(v); });
}
norvik50_value* norvik50_value_new_currency(int64_t scaled) {
  return Constructed([scaled] { return Variant(norvik50::Currency::FromScaled(scaled)); });
}
norvik50_value* norvik50_value_new_boolean(int v) {
  return Constructed([v] { return Variant(v != 0); });
}
norvik50_value* norvik50_value_new_error(int32_t code) {
  return Constructed([code] { return Variant(norvik50::ErrorValue{code}); });
}
norvik50_value* norvik50_value_new_byte(uint8_t v) {
  return Constructed([v] { return Variant(v); });
}
norvik50_value* norvik50_value_new_string16(const uint16_t* units, size_t length) {
  if (units == nullptr && length != 0) return nullptr;
  return Constructed([=] {
    std::u16string text(length, u'\0');
    if (length != 0) std::memcpy(text.data(), units, length * sizeof(char16_t));
    return Variant(std::move(text));
  });
}

int32_t norvik50_value_new_date(double serial, norvik50_value** out) {
  return Guarded(nullptr, [&] {
    if (!(serial >= norvik50::Date::kMinSerial && serial <= norvik50::Date::kMaxSerial)) {
      norvik50::Raise(norvik50::kErrOverflow);
    }
    Hand(out, Variant(norvik50::Date{serial}));
  });
}

int32_t norvik50_value_new_utf8(const char* text, size_t length, norvik50_value** out) {
  return Guarded(nullptr, [&] {
    std::u16string decoded = StrictFromUtf8(text, length);
    Hand(out, Variant(std::move(decoded)));
  });
}

int32_t norvik50_value_new_decimal(uint32_t hi, uint64_t lo, uint8_t scale, int negative,
                                   norvik50_value** out) {
  return Guarded(nullptr, [&] {
    if (scale > kMaxDecimalScale) norvik50::Raise(norvik50::kErrInvalidCall);
    Hand(out, Variant(norvik50::Decimal{hi, lo, scale, negative != 0}));
  });
}

norvik50_value* norvik50_value_copy(const norvik50_value* v) {
  if (v == nullptr) return nullptr;
  return Constructed([v] { return *AsVariant(v); });
}

void norvik50_value_free(norvik50_value* v) { delete AsVariant(v); }

uint16_t norvik50_value_type(const norvik50_value* v) {
  return v == nullptr ? 0 : static_cast<uint16_t>(AsVariant(v)->type());
}

int32_t norvik50_value_get_integer(const norvik50_value* v, int16_t* out) {
  return ReadAs(v, VarType::kInteger, [&](const Variant& x) { Store(out, x.as_integer()); });
}
int32_t norvik50_value_get_long(const norvik50_value* v, int32_t* out) {
  return ReadAs(v, VarType::kLong, [&](const Variant& x) { Store(out, x.as_long()); });
}
int32_t norvik50_value_get_single(const norvik50_value* v, float* out) {
  return ReadAs(v, VarType::kSingle, [&](const Variant& x) { Store(out, x.as_single()); });
}
int32_t norvik50_value_get_double(const norvik50_value* v, double* out) {
  return ReadAs(v, VarType::kDouble, [&](const Variant& x) { Store(out, x.as_double()); });
}
int32_t norvik50_value_get_currency(const norvik50_value* v, int64_t* scaled) {
  return ReadAs(v, VarType::kCurrency,
                [&](const Variant& x) { Store(scaled, x.as_currency().scaled); });
}
int32_t norvik50_value_get_date(const norvik50_value* v, double* serial) {
  return ReadAs(v, VarType::kDate, [&](const Variant& x) { Store(serial, x.as_date().serial); });
}
int32_t norvik50_value_get_boolean(const norvik50_value* v, int16_t* out) {
  return ReadAs(v, VarType::kBoolean, [&](const Variant& x) { Store(out, x.as_boolean()); });
}
int32_t norvik50_value_get_error(const norvik50_value* v, int32_t* code) {
  return ReadAs(v, VarType::kError, [&](const Variant& x) { Store(code, x.as_error().code); });
}
int32_t norvik50_value_get_byte(const norvik50_value* v, uint8_t* out) {
  return ReadAs(v, VarType::kByte, [&](const Variant& x) { Store(out, x.as_byte()); });
}
int32_t norvik50_value_get_decimal(const norvik50_value* v, uint32_t* hi, uint64_t* lo,
                                   uint8_t* scale, int* negative) {
  return ReadAs(v, VarType::kDecimal, [&](const Variant& x) {
    const norvik50::Decimal d = x.as_decimal();
    if (hi == nullptr || lo == nullptr || scale == nullptr || negative == nullptr) {
      norvik50::Raise(norvik50::kErrInvalidCall);
    }
    *hi = d.hi;
    *lo = d.lo;
    *scale = d.scale;
    *negative = d.negative ? 1 : 0;
  });
}

int32_t norvik50_value_get_string16(const norvik50_value* v, const uint16_t** units,
                                    size_t* length) {
  return ReadAs(v, VarType::kString, [&](const Variant& x) {
    if (units == nullptr || length == nullptr) norvik50::Raise(norvik50::kErrInvalidCall);
    const std::u16string& s = x.as_string();
    *units = reinterpret_cast<const uint16_t*>(s.data());
    *length = s.size();
  });
}

int32_t norvik50_value_get_utf8(const norvik50_value* v, char** text, size_t* length) {
  return ReadAs(v, VarType::kString, [&](const Variant& x) {
    if (text == nullptr) norvik50::Raise(norvik50::kErrInvalidCall);
    const std::string utf8 = norvik50::ToUtf8(x.as_string());
    char* copy = static_cast<char*>(std::malloc(utf8.size() + 1));
    if (copy == nullptr) throw std::bad_alloc();
    std::memcpy(copy, utf8.c_str(), utf8.size() + 1);
    *text = copy;
    if (length != nullptr) *length = utf8.size();
  });
}

}  // extern "C"
