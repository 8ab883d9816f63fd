// The scalar value types of the automation value model that have no
// built-in C++ counterpart: Currency, Date and Decimal.
#ifndef NORVIK50_VALUES_H_
#define NORVIK50_VALUES_H_

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/export.h"

namespace norvik50 {

struct Decimal;

// Currency: a 64-bit integer scaled by 10,000 (four decimal places).
struct NORVIK50_EXPORT Currency {
  int64_t scaled = 0;

  static constexpr int64_t kScale = 10000;
  static constexpr Currency FromScaled(int64_t s) noexcept { return {s}; }
  // The exact binary value times 10,000, rounded half to even, as the
  // runtime's CCur does; raises overflow (6) outside the Currency range or
  // for NaN and infinities.
  static Currency FromDouble(double value);
  // The Decimal's digits at four places, half to even beyond them, with no
  // step through a Double; raises overflow (6) outside the Currency range.
  static Currency FromDecimal(const Decimal& value);
  double ToDouble() const noexcept { return static_cast<double>(scaled) / kScale; }
  // Plain decimal text with '.' and no trailing zeros: "12.5", "-0.0001".
  std::string ToString() const;
  // Parses what ToString writes (and "12.50", "+3"); nullopt otherwise.
  static std::optional<Currency> Parse(std::string_view text);

  friend auto operator<=>(Currency, Currency) = default;
};

// A calendar date and time of day, as Date splits it.
struct CivilDateTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;
  friend bool operator==(const CivilDateTime&, const CivilDateTime&) = default;
};

// Date: the automation serial date, days since 1899-12-30 as a double; the
// fraction is the time of day. For dates before 1899-12-30 the integer part
// is negative and the fraction still counts forward from midnight
// (-1.25 is 1899-12-29 06:00), as the automation date defines it.
struct NORVIK50_EXPORT Date {
  double serial = 0.0;

  // The range the runtime accepts: 100-01-01 00:00:00 to 9999-12-31
  // 23:59:59. Before the epoch the time of day makes a serial more negative,
  // so the first day's last second lies below its midnight (-657434.0):
  // the range ends at a whole day's worth of seconds on both sides.
  static constexpr double kMinSerial = -657434.99998843;
  static constexpr double kMaxSerial = 2958465.99998843;

  // Raises overflow (6) for a date outside 100..9999 or an invalid day.
  static Date FromCivil(const CivilDateTime& c);
  static bool IsValidCivil(const CivilDateTime& c) noexcept;
  // Rounds to the nearest second; raises overflow (6) for a serial outside
  // kMinSerial..kMaxSerial (and NaN), which names no calendar day.
  CivilDateTime ToCivil() const;
  // The current local date and time.
  static Date Now();
  // "2024-03-05T14:07:09" (the batch protocol's form); dates without a time
  // still carry "T00:00:00".
  std::string ToIsoString() const;
  static std::optional<Date> ParseIso(std::string_view text);

  friend auto operator<=>(Date, Date) = default;
};

// Decimal: the automation 96-bit decimal, sign, scale 0..28.
struct NORVIK50_EXPORT Decimal {
  uint32_t hi = 0;    // top 32 bits of the 96-bit magnitude
  uint64_t lo = 0;    // low 64 bits
  uint8_t scale = 0;  // decimal places
  bool negative = false;

  double ToDouble() const noexcept;
  // The value's 15 significant digits (a Single's 7), ties away from zero,
  // at most 28 places; raises overflow (6) beyond the 96-bit range.
  static Decimal FromDouble(double value);
  static Decimal FromSingle(float value);
  // Plain text with '.', e.g. "-1.50" keeps its scale.
  std::string ToString() const;
  static std::optional<Decimal> Parse(std::string_view text);

  friend bool operator==(const Decimal&, const Decimal&) = default;
};

}  // namespace norvik50

#endif  // NORVIK50_VALUES_H_
