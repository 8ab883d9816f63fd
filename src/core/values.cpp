#include "norvik50/values.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "core/number_text_digits.h"
#include "norvik50/error.h"

namespace norvik50 {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kEpoch = std::chrono::year{1899} / 12 / 30;
constexpr int kSecondsPerDay = 86400;

bool ParseDigits(std::string_view text, std::size_t& pos, int count, int& out) {
  out = 0;
  for (int i = 0; i < count; ++i, ++pos) {
    if (pos >= text.size() || text[pos] < '0' || text[pos] > '9') return false;
    out = out * 10 + (text[pos] - '0');
  }
  return true;
}

__extension__ typedef unsigned __int128 U128;
constexpr U128 kDecimalMax = (static_cast<U128>(1) << 96) - 1;

U128 Magnitude(const Decimal& d) { return (static_cast<U128>(d.hi) << 64) | d.lo; }

}  // namespace

// ---- Currency -------------------------------------------------------------

Currency Currency::FromDouble(double value) {
  // The runtime scales the binary value by 10,000 in extended precision,
  // where the product is exact (53 + 14 bits fit the 64-bit mantissa), and
  // rounds half to even. Integer arithmetic on mantissa and exponent gives
  // the same result on every machine: 0.00035, whose double lies just
  // below it, is 0.0003, and 922337203685477 keeps all its digits.
  if (!std::isfinite(value)) Raise(kErrOverflow);
  const bool negative = value < 0;
  int exponent = 0;
  const double fraction = std::frexp(std::fabs(value), &exponent);  // [0.5, 1)
  const U128 product =
      static_cast<U128>(static_cast<uint64_t>(std::ldexp(fraction, 53))) * kScale;  // < 2^67
  const int shift = exponent - 53;  // |value| x 10,000 = product x 2^shift
  const U128 limit = (static_cast<U128>(1) << 63) - (negative ? 0 : 1);
  U128 magnitude = 0;
  if (shift >= 0) {
    if (shift >= 64 || product > (limit >> shift)) Raise(kErrOverflow);
    magnitude = product << shift;
  } else if (-shift < 100) {
    const int n = -shift;
    magnitude = product >> n;
    const U128 rest = product - (magnitude << n);
    const U128 half = static_cast<U128>(1) << (n - 1);
    if (rest > half || (rest == half && (magnitude & 1) != 0)) ++magnitude;
  }  // else far below 0.00005: zero
  if (magnitude > limit) Raise(kErrOverflow);
  const uint64_t m = static_cast<uint64_t>(magnitude);
  return {negative ? static_cast<int64_t>(uint64_t{0} - m) : static_cast<int64_t>(m)};
}

Currency Currency::FromDecimal(const Decimal& value) {
  // Scaling the digits themselves keeps every digit of a large amount: a
  // Decimal of 922337203685476 is exactly that Currency, where a Double
  // would already have lost the last places.
  U128 m = (static_cast<U128>(value.hi) << 64) | value.lo;
  if (value.scale <= 4) {
    for (int scale = value.scale; scale < 4; ++scale) m *= 10;  // < 2^96 x 10^4: no wrap
  } else {
    U128 divisor = 1;
    for (int scale = value.scale; scale > 4; --scale) divisor *= 10;
    const U128 rest = m % divisor;
    m /= divisor;
    const U128 half = divisor / 2;  // divisor is even
    if (rest > half || (rest == half && (m & 1) != 0)) ++m;
  }
  const U128 limit = (static_cast<U128>(1) << 63) - (value.negative ? 0 : 1);
  if (m > limit) Raise(kErrOverflow);
  const uint64_t magnitude = static_cast<uint64_t>(m);
  return {value.negative ? static_cast<int64_t>(uint64_t{0} - magnitude)
                         : static_cast<int64_t>(magnitude)};
}

std::string Currency::ToString() const {
  const bool negative = scaled < 0;
  const uint64_t magnitude =
      negative ? uint64_t{0} - static_cast<uint64_t>(scaled) : static_cast<uint64_t>(scaled);
  std::string text = (negative ? "-" : "") + std::to_string(magnitude / kScale);
  uint64_t fraction = magnitude % kScale;
  if (fraction != 0) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "%04u", static_cast<unsigned>(fraction));
    std::string f(digits);
    while (f.back() == '0') f.pop_back();
    text += "." + f;
  }
  return text;
}

std::optional<Currency> Currency::Parse(std::string_view text) {
  std::size_t pos = 0;
  bool negative = false;
  if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) {
    negative = text[pos++] == '-';
  }
  U128 value = 0;
  int int_digits = 0;
  while (pos < text.size() && text[pos] >= '0' && text[pos] <= '9') {
    value = value * 10 + static_cast<unsigned>(text[pos++] - '0');
    if (value > (static_cast<U128>(1) << 63)) return std::nullopt;
    ++int_digits;
  }
  int frac_digits = 0;
  if (pos < text.size() && text[pos] == '.') {
    ++pos;
    while (pos < text.size() && text[pos] >= '0' && text[pos] <= '9') {
      if (++frac_digits > 4) return std::nullopt;
      value = value * 10 + static_cast<unsigned>(text[pos++] - '0');
    }
  }
  if (pos != text.size() || int_digits + frac_digits == 0) return std::nullopt;
  for (; frac_digits < 4; ++frac_digits) value *= 10;
  const U128 limit = negative ? (static_cast<U128>(1) << 63) : (static_cast<U128>(1) << 63) - 1;
  if (value > limit) return std::nullopt;
  const auto magnitude = static_cast<uint64_t>(value);
  return Currency{negative ? static_cast<int64_t>(uint64_t{0} - magnitude)
                           : static_cast<int64_t>(magnitude)};
}

// ---- Date -----------------------------------------------------------------

bool Date::IsValidCivil(const CivilDateTime& c) noexcept {
  const year_month_day ymd{std::chrono::year{c.year},
                           std::chrono::month{static_cast<unsigned>(c.month)},
                           std::chrono::day{static_cast<unsigned>(c.day)}};
  return c.year >= 100 && c.year <= 9999 && c.month >= 1 && c.month <= 12 && c.day >= 1 &&
         ymd.ok() && c.hour >= 0 && c.hour < 24 && c.minute >= 0 && c.minute < 60 &&
         c.second >= 0 && c.second < 60;
}

Date Date::FromCivil(const CivilDateTime& c) {
  if (!IsValidCivil(c)) Raise(kErrOverflow);
  const year_month_day ymd{std::chrono::year{c.year},
                           std::chrono::month{static_cast<unsigned>(c.month)},
                           std::chrono::day{static_cast<unsigned>(c.day)}};
  const auto day_number = (sys_days{ymd} - kEpoch).count();
  const double time =
      static_cast<double>(c.hour * 3600 + c.minute * 60 + c.second) / kSecondsPerDay;
  // Before the epoch the time still counts forward from midnight, so it is
  // subtracted from the (negative) day number.
  return {day_number >= 0 ? day_number + time : day_number - time};
}

CivilDateTime Date::ToCivil() const {
  // Past the range the day number would not fit the calendar arithmetic.
  if (!(serial >= kMinSerial && serial <= kMaxSerial)) Raise(kErrOverflow);
  double whole = std::trunc(serial);
  double time = std::fabs(serial - whole);
  int64_t day_number = static_cast<int64_t>(whole);
  int64_t seconds = std::llround(time * kSecondsPerDay);
  if (seconds >= kSecondsPerDay) {  // rounding reached the next midnight
    seconds -= kSecondsPerDay;
    ++day_number;
  }
  const year_month_day ymd{kEpoch + days{day_number}};
  return {static_cast<int>(ymd.year()),
          static_cast<int>(static_cast<unsigned>(ymd.month())),
          static_cast<int>(static_cast<unsigned>(ymd.day())),
          static_cast<int>(seconds / 3600),
          static_cast<int>(seconds / 60 % 60),
          static_cast<int>(seconds % 60)};
}

Date Date::Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return FromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                    local.tm_min, std::min(local.tm_sec, 59)});
}

std::string Date::ToIsoString() const {
  const CivilDateTime c = ToCivil();
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", c.year, c.month, c.day, c.hour,
                c.minute, c.second);
  return text;
}

std::optional<Date> Date::ParseIso(std::string_view text) {
  CivilDateTime c;
  std::size_t pos = 0;
  if (!ParseDigits(text, pos, 4, c.year) || pos >= text.size() || text[pos++] != '-' ||
      !ParseDigits(text, pos, 2, c.month) || pos >= text.size() || text[pos++] != '-' ||
      !ParseDigits(text, pos, 2, c.day)) {
    return std::nullopt;
  }
  c.hour = c.minute = c.second = 0;
  if (pos < text.size()) {
    if (text[pos] != 'T' && text[pos] != ' ') return std::nullopt;
    ++pos;
    if (!ParseDigits(text, pos, 2, c.hour) || pos >= text.size() || text[pos++] != ':' ||
        !ParseDigits(text, pos, 2, c.minute)) {
      return std::nullopt;
    }
    if (pos < text.size()) {
      if (text[pos++] != ':' || !ParseDigits(text, pos, 2, c.second)) return std::nullopt;
    }
    if (pos != text.size()) return std::nullopt;
  }
  if (!IsValidCivil(c)) return std::nullopt;
  return FromCivil(c);
}

// ---- Decimal --------------------------------------------------------------

double Decimal::ToDouble() const noexcept {
  long double v = static_cast<long double>(Magnitude(*this));
  for (int i = 0; i < scale; ++i) v /= 10;
  return static_cast<double>(negative ? -v : v);
}

namespace {

// The Decimal of `value` rounded to `precision` significant digits.
Decimal DecimalOfDigits(double value, int precision) {
  if (!std::isfinite(value) || std::fabs(value) >= 7.9228162514264338e28) {
    Raise(kErrOverflow);
  }
  if (value == 0) return Decimal{};
  const SignificantDigits s = SignificantDigitsOf(value, precision);
  std::string digits(s.digits, static_cast<std::size_t>(s.count));
  int exponent = s.exponent - (s.count - 1);  // value = digits x 10^exponent
  // More than 28 places: drop digits, rounding half away from zero.
  while (exponent < -28 && !digits.empty()) {
    const bool up = digits.back() >= '5';
    digits.pop_back();
    ++exponent;
    if (up) {
      int i = static_cast<int>(digits.size()) - 1;
      while (i >= 0 && digits[i] == '9') digits[i--] = '0';
      if (i >= 0) {
        ++digits[i];
      } else {
        digits.insert(digits.begin(), '1');
      }
    }
  }
  U128 m = 0;
  for (char c : digits) m = m * 10 + static_cast<unsigned>(c - '0');
  for (; exponent > 0; --exponent) m *= 10;
  int scale = -std::min(exponent, 0);
  while (scale > 0 && m % 10 == 0) {  // 1.5 is scale 1, not 14
    m /= 10;
    --scale;
  }
  Decimal d;
  if (m == 0) return d;
  if (m > kDecimalMax) Raise(kErrOverflow);
  d.negative = s.negative;
  d.hi = static_cast<uint32_t>(m >> 64);
  d.lo = static_cast<uint64_t>(m);
  d.scale = static_cast<uint8_t>(scale);
  return d;
}

}  // namespace

// A Double carries 15 reliable significant digits and a Single 7; the
// Decimal keeps exactly those, so the Single 0.6 is the Decimal 0.6.
Decimal Decimal::FromDouble(double value) { return DecimalOfDigits(value, 15); }

Decimal Decimal::FromSingle(float value) { return DecimalOfDigits(static_cast<double>(value), 7); }

std::string Decimal::ToString() const {
  U128 m = Magnitude(*this);
  std::string digits;
  do {
    digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(m % 10)));
    m /= 10;
  } while (m != 0);
  if (digits.size() <= scale) digits.insert(0, scale - digits.size() + 1, '0');
  if (scale > 0) digits.insert(digits.size() - scale, ".");
  return (negative ? "-" : "") + digits;
}

std::optional<Decimal> Decimal::Parse(std::string_view text) {
  std::size_t pos = 0;
  Decimal d;
  if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) {
    d.negative = text[pos++] == '-';
  }
  U128 m = 0;
  int digits = 0;
  bool point = false;
  for (; pos < text.size(); ++pos) {
    const char c = text[pos];
    if (c == '.' && !point) {
      point = true;
      continue;
    }
    if (c < '0' || c > '9') return std::nullopt;
    m = m * 10 + static_cast<unsigned>(c - '0');
    if (m > kDecimalMax) return std::nullopt;
    ++digits;
    if (point && ++d.scale > 28) return std::nullopt;
  }
  if (digits == 0) return std::nullopt;
  d.hi = static_cast<uint32_t>(m >> 64);
  d.lo = static_cast<uint64_t>(m);
  return d;
}

}  // namespace norvik50
