// Text to Date as the runtime's CDate reads it in the current locale.
#ifndef NORVIK50_SRC_NUMERIC_DATE_PARSE_H_
#define NORVIK50_SRC_NUMERIC_DATE_PARSE_H_

#include <optional>
#include <string_view>

#include "norvik50/locale.h"
#include "norvik50/values.h"

namespace norvik50 {

// Reads a date, a time or both from `text`:
//  - the ISO form 2024-03-05, 2024-03-05 14:07:09, 2024-03-05T14:07:09;
//  - day, month and year as numbers in the order of the locale's short date
//    (German 5.3.2024, English 3/5/2024), with ".", "/", "-" or blanks
//    between them; a year first when it has four digits; a month above 12
//    swaps with the day when that makes a valid date; without a year the
//    current year; two-digit years 00-29 are 2000-2029, 30-99 1930-1999;
//  - month names and abbreviations of the locale or English, weekday names
//    (ignored): "5. März 2024", "March 5, 2024", "Tuesday, March 5, 2024";
//  - a time h:mm or h:mm:ss, with AM/PM (or the locale's marks).
// A text with only a time is that time on 1899-12-30 (serial below 1).
// nullopt when the text is none of these or names an impossible date.
std::optional<Date> ParseDateText(std::u16string_view text, const Locale& locale);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_DATE_PARSE_H_
