// Numbers and dates as the host runtime writes them when it turns a value
// into text without a pattern (CStr): 15 significant digits for a Double,
// 7 for a Single (exact ties away from zero), the locale's decimal
// separator, fixed notation while it needs no more digits before or after
// the point than that, else the exponent form ("1E+15", "5.6789E-12");
// dates in the locale's general date form. Also
// the locale's day and month names (from ICU) and its date patterns
// (written with the Windows pattern letters), which the Format engine uses.
#ifndef NORVIK50_SRC_CORE_NUMBER_TEXT_H_
#define NORVIK50_SRC_CORE_NUMBER_TEXT_H_

#include <optional>
#include <string>
#include <string_view>

#include "norvik50/locale.h"
#include "norvik50/values.h"

namespace norvik50 {

std::u16string DoubleToText(double value, char16_t decimal);
std::u16string SingleToText(float value, char16_t decimal);
std::u16string CurrencyToText(Currency value, char16_t decimal);
std::u16string DecimalToText(const Decimal& value, char16_t decimal);
// The general date form: the locale's short date, then its long time; the
// date is left out when the day is 1899-12-30 (a pure time), the time when
// it is midnight and the date is shown ("05.03.2024 14:07:09",
// "3/5/2024 2:07:09 PM", "6:00:00 AM"); a year below 1000 has no leading
// zeros ("1/1/100"). DateToText raises overflow (6) for
// a serial outside the Date range.
std::u16string DateToText(Date value);
std::u16string GeneralDateText(const CivilDateTime& c, const Locale& locale);

// Day and month names of one locale. Abbreviations are the stand-alone
// forms without a trailing period ("Mo", "Jan"), as dates show them.
struct CalendarNames {
  std::u16string months[12];
  std::u16string short_months[12];
  std::u16string weekdays[7];  // 0 = Sunday
  std::u16string short_weekdays[7];
};

// The names for `locale` (English when ICU has none). Cached per locale.
const CalendarNames& NamesFor(const Locale& locale);

// Day of the week of a civil date, 0 = Sunday.
int WeekdayOf(const CivilDateTime& c);

// Renders `pattern` written with the Windows locale pattern letters
// (d dd ddd dddd, M MM MMM MMMM, y yy yyyy, h hh H HH, m mm, s ss, t tt,
// 'quoted' text); every other character stands for itself. `pad_year`
// false writes "yyyy" without leading zeros (the year 100 as "100").
std::u16string RenderLocalePattern(std::u16string_view pattern, const CivilDateTime& c,
                                   const Locale& locale, bool pad_year = true);

// A plain numeric text: blanks around it, a sign, digits with the locale's
// decimal separator (or '.'), an exponent, or "&H"/"&O" radix forms.
// nullopt when the text is not such a number.
std::optional<double> ParsePlainNumber(std::u16string_view text, char16_t decimal);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_NUMBER_TEXT_H_
