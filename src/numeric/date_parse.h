// Text to Date as the runtime's CDate reads it in the current locale, and
// refuses what it refuses. One grammar, read in this order:
//
//  1. The ISO form as a whole: 2024-03-05, 2024-03-05 14:07:09,
//     2024-03-05T14:07:09.
//  2. Tokens. Numbers (at most four digits), words and separators; blanks
//     (the space, the tab and every Unicode space, the ideographic one
//     included) and "," only stand between parts. A "+" anywhere, and a
//     separator before the first part ("-1.1"), is a sign: refused.
//  3. Parts. Numbers joined directly by separators of one kind form a
//     chain: ":" (and the locale's time separator) a time chain, "/", "-"
//     and the locale's date separator a date chain, "." a dot chain (a date
//     separator only where the locale's is "."). A chain may end in "."
//     ("5. März"); a separator next to a word only separates ("5-Mar-2024").
//     Words are month names and abbreviations of the locale or English,
//     weekday names (skipped) and the AM/PM marks ("am", "a", the locale's).
//     Anything else, or two numbers joined by "," or by separators of two
//     kinds, is refused.
//  4. The time. The time chain (h:mm or h:mm:ss); a lone number followed by
//     a mark is a bare hour ("1 am"); a dot chain followed by a mark is a
//     time. One time at most, before all of the date's numbers or after
//     them all, never between two of them ("1 2:30 3", "1 2 am 3" and
//     "1 2.3 4" are refused; "1.2 3 4" and "1 2 3 4.5" are dates with
//     times); month names do not count. A mark belongs to the part right
//     before it and does nothing on an hour above 12 ("13:00 PM" is
//     13:00); a mark without a time is refused.
//  5. Dot chains. Where "." is the locale's date separator each is read as
//     a date first; when that gives no date, the last dot chain becomes the
//     time, then the one before. Elsewhere a dot chain is always a time
//     ("0.40" is 00:40, "1.5.2" 01:05:02, "02.01.1970" no date at all),
//     except two zeros joined by one dot ("0.0", "00.00"): no time, so
//     refused ("0.1", "0.0.0" and "0:0" are times).
//  6. The date, from a month name and the remaining numbers, taking the
//     first reading that is a valid day (kMonthNameReadings and
//     kNumberReadings in the source hold the order):
//     - a month name with one number: its day in the current year, else a
//       year and the first of the month ("Jan 35" is 1 January 1935); with
//       two: day and year, or year and day when the first has 3-4 digits;
//     - three numbers: the locale's order (German d.M.y, English M/d/y);
//       then year, month, day ("14 2 3" in English is 3 February 2014);
//       then the locale's order with day and month swapped ("13/5/2024");
//       a first number of 3-4 digits or above 31 is only ever a year;
//     - two numbers: the locale's order of day and month in the current
//       year, the same swapped, then month and year, then year and month
//       ("30 2" is February 1930);
//     - no numbers: the time alone, on 1899-12-30 (a serial below 1);
//     - a dot chain of two numbers reads as a decimal fraction and joins
//       no other number ("1.5 2" is refused).
//     Years of one or two digits are 2000-2029 for 00-29, else 1930-1999.
#ifndef NORVIK50_SRC_NUMERIC_DATE_PARSE_H_
#define NORVIK50_SRC_NUMERIC_DATE_PARSE_H_

#include <optional>
#include <string_view>

#include "norvik50/locale.h"
#include "norvik50/values.h"

namespace norvik50 {

// The current year, asked only when a text leaves the year out.
using CurrentYearSource = int (*)();

// The year of Date::Now().
int CurrentYearNow();

// The date, time or both that `text` names; nullopt when the runtime would
// refuse it or it names an impossible date or time.
std::optional<Date> ParseDateText(std::u16string_view text, const Locale& locale,
                                  CurrentYearSource current_year = &CurrentYearNow);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_DATE_PARSE_H_
