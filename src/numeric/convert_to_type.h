// Conversion of a value to a requested value type, as the runtime's CInt,
// CLng, CSng, CDbl, CCur, CDate, CStr, CBool, CDec and CByte do it in the
// current locale, with a fallback instead of an error where callers want
// one. Shared entry point of the numeric layer: the SQL builders, the
// settings store and the resource substitution use it.
//
// Type codes are the automation ones: 2 Integer, 3 Long, 4 Single, 5 Double,
// 6 Currency, 7 Date, 8 String, 11 Boolean, 14 Decimal, 17 Byte; 12
// (Variant) and 9, 10, 13, 15, 16 keep the value as it is.
//
// Text to number is locale-aware (numeric/locale_number.h): the decimal
// separator is the point, the thousands separator is ignored (German
// "1.234,56" and English "1,234.56" are both 1234.56). Integer, Long and
// Byte round half to even (2.5 -> 2, 3.5 -> 4); a Byte of True is 255.
// Currency from a Double or Single scales the exact binary value by 10,000
// and rounds half to even; from a Decimal it is exact. A Decimal keeps a
// Double's 15 and a Single's 7 significant digits. Text to Boolean reads
// "True", "False" and "#TRUE#", "#FALSE#" (German also "Wahr", "Falsch").
// Text to Date reads the locale's date forms and ISO (numeric/date_parse.h).
// Numbers become text with 15 significant digits (Single 7) and the
// locale's decimal separator, fixed while that needs no more digits before
// or after the point, else in exponent form (core/number_text.h); Dates in
// the general date form of the locale; Booleans as "True" and "False".
#ifndef NORVIK50_SRC_NUMERIC_CONVERT_TO_TYPE_H_
#define NORVIK50_SRC_NUMERIC_CONVERT_TO_TYPE_H_

#include <cstdint>

#include "norvik50/variant.h"

namespace norvik50 {

// `value` converted to type code `var_type`. Never raises: a conversion
// that fails (type mismatch, overflow, Null) gives the fallback instead:
// the 16-bit Integer 0 for codes 2, 3, 4, 5, 6, 14 and 17 (not converted
// further), today's date without a time for 7, "" for 8 and False for 11.
// Codes outside 2..17, and 9, 10, 12, 13, 15, 16, return `value` unchanged.
Variant ConvertToType(int32_t var_type, const Variant& value);

// The same conversion without the fallback: raises type mismatch (13) for
// a value that is not of a convertible kind (a text that is no number or
// date, an array, an object), overflow (6) outside the target's range and
// invalid use of Null (94) for Null.
Variant ConvertStrict(int32_t var_type, const Variant& value);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_CONVERT_TO_TYPE_H_
