// The Format engine: a value as text through a pattern, in the current
// locale. Every caller that writes a value with a pattern goes through it:
// rounding, SQL date literals, resource substitution, list numbering and
// the settings store.
//
// Patterns:
//  - "" : the value as the runtime writes it without a pattern (15
//    significant digits, the locale's decimal separator, the general date
//    form for Dates, "True"/"False" for Booleans);
//  - named formats (case-insensitive): General Number, Currency, Fixed,
//    Standard, Percent, Scientific, Yes/No, True/False, On/Off, Short Date,
//    Long Date, Short Time, Long Time, General Date;
//  - number patterns: 0 (digit or zero), # (digit or nothing), . (the
//    locale's decimal separator), , (grouping between digit placeholders,
//    thousands scaling after the last one), % (times 100), E+ E- e+ e-
//    (exponent), "quoted" and \escaped literals, any other character as
//    itself;
//  - date patterns: c, d dd ddd dddd ddddd dddddd, w ww, m mm mmm mmmm,
//    q, y yy yyyy, h hh, n nn, s ss, ttttt, AM/PM am/pm A/P a/p AMPM; "/"
//    and ":" stand for the locale's date and time separators unless escaped;
//    "m" right after an hour is the minute;
//  - up to three sections separated by ";": positive;negative;zero. With
//    one section a negative number gets a leading "-" (also when it rounds
//    to zero: -0.001 with "0.00" is "-0.00"); an empty section takes the
//    first one's place.
// A section is a date pattern when its first placeholder is a date letter.
//
// Numbers round half away from zero on their decimal digits (2.5 -> "3",
// -2.5 -> "-3", 0.125 with two places -> "0.13"), never on the binary
// expansion; a Double brings 15 significant digits, a Single 7, Currency
// and Decimal all of theirs.
//
// Values: numbers, Currency, Decimal, Booleans (-1 and 0) and Dates (their
// serial) take number patterns; Dates and numbers (as serial dates) take
// date patterns; a text that is a number in the locale is that number, else
// a text that is a date is that date, else the text comes back unchanged.
// Empty is 0 under a pattern and "" without one; Null gives "".
#ifndef NORVIK50_SRC_NUMERIC_FORMAT_H_
#define NORVIK50_SRC_NUMERIC_FORMAT_H_

#include <string>
#include <string_view>

#include "norvik50/variant.h"

namespace norvik50 {

// `value` formatted with `pattern` in the current locale. A malformed
// pattern never fails: what is not a placeholder is written as it stands.
// Raises type mismatch (13) for arrays, records, objects and Error values,
// overflow (6) for a non-finite number and for a number outside the Date
// range (100-01-01 to 9999-12-31) under a date pattern.
std::u16string FormatValue(const Variant& value, std::u16string_view pattern);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_FORMAT_H_
