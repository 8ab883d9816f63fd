#include "norvik50/values.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <ctime>

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
  const double scaled = value * static_cast<double>(kScale);
  // 2^63 is the first value past the range; NaN fails every comparison.
  if (!(scaled > -9223372036854775808.0 && scaled < 9223372036854775808.0)) {
    Raise(kErrOverflow);
  }
  // nearbyint in the default rounding mode rounds half to even.
  return {static_cast<int64_t>(std::nearbyint(scaled))};
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
  return c.year >= 100 && c.year <= 9999 && c.month >= 1 && c.month <= 12 &&
         c.day >= 1 && ymd.ok() && c.hour >= 0 && c.hour < 24 &&
         c.minute >= 0 && c.minute < 60 && c.second >= 0 && c.second < 60;
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
  double whole = std::trunc(serial);
  double time = std::fabs(serial - whole);
  int64_t day_number = static_cast<int64_t>(whole);
  int64_t seconds = std::llround(time * kSecondsPerDay);
  if (seconds >= kSecondsPerDay) {  // rounding reached the next midnight
    seconds -= kSecondsPerDay;
    ++day_number;
  }
  const year_month_day ymd{kEpoch + days{day_number}};
  return {static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
          static_cast<int>(static_cast<unsigned>(ymd.day())),
          static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
          static_cast<int>(seconds % 60)};
}

Date Date::Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return FromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                    local.tm_hour, local.tm_min, std::min(local.tm_sec, 59)});
}

std::string Date::ToIsoString() const {
  const CivilDateTime c = ToCivil();
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", c.year, c.month,
                c.day, c.hour, c.minute, c.second);
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

Decimal Decimal::FromDouble(double value) {
  if (!std::isfinite(value) || std::fabs(value) >= 7.9228162514264338e28) {
    Raise(kErrOverflow);
  }
  Decimal d;
  if (value == 0) return d;
  d.negative = value < 0;
  // A double carries 15 reliable significant digits; that is what the
  // conversion keeps: "d.dddddddddddddde+XX".
  char text[40];
  std::snprintf(text, sizeof text, "%.14e", std::fabs(value));
  std::string digits;
  const char* p = text;
  for (; *p && *p != 'e'; ++p) {
    if (*p != '.') digits.push_back(*p);
  }
  int exponent = std::atoi(p + 1) - 14;  // value = digits * 10^exponent
  // More than 28 places: drop digits, rounding half away from zero.
  while (exponent < -28 && !digits.empty()) {
    const bool up = digits.back() >= '5';
    digits.pop_back();
    ++exponent;
    if (up) {
      int i = static_cast<int>(digits.size()) - 1;
      while (i >= 0 && digits[i] == '9') digits[i--] = '0';
      if (i >= 0) ++digits[i]; else digits.insert(digits.begin(), '1');
    }
  }
  if (digits.empty()) return Decimal{};
  U128 m = 0;
  for (char c : digits) m = m * 10 + static_cast<unsigned>(c - '0');
  for (; exponent > 0; --exponent) m *= 10;
  int scale = -std::min(exponent, 0);
  while (scale > 0 && m % 10 == 0) {  // 1.5 is scale 1, not 14
    m /= 10;
    --scale;
  }
  if (m == 0) return Decimal{};
  d.hi = static_cast<uint32_t>(m >> 64);
  d.lo = static_cast<uint64_t>(m);
  d.scale = static_cast<uint8_t>(scale);
  return d;
}

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
