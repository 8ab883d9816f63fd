// Dates as text in the current locale: the day and month names (from ICU
// for the locale), the locale's own patterns (short date, long date, long
// time, written with the Windows pattern letters) and the general date form
// the runtime uses when it turns a Date into text without a pattern.
#ifndef NORVIK50_SRC_NUMERIC_CALENDAR_TEXT_H_
#define NORVIK50_SRC_NUMERIC_CALENDAR_TEXT_H_

#include <string>
#include <string_view>

#include "norvik50/locale.h"
#include "norvik50/values.h"

namespace norvik50 {

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
// 'quoted' text); every other character stands for itself.
std::u16string RenderLocalePattern(std::u16string_view pattern, const CivilDateTime& c,
                                   const Locale& locale);

// The general date form: the short date, then the long time; the date is
// left out when the day is 1899-12-30 (a pure time), the time when it is
// midnight and the date is shown.
std::u16string GeneralDateText(const CivilDateTime& c, const Locale& locale);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_CALENDAR_TEXT_H_
