// Values as SQL literals for the desktop dialect (dates in "#") and the
// server dialect (dates through CONVERT), and WHERE-clause bodies built
// from name/value pairs.
#ifndef NORVIK50_SRC_NUMERIC_SQL_LITERALS_H_
#define NORVIK50_SRC_NUMERIC_SQL_LITERALS_H_

#include <string>

#include "norvik50/variant.h"

namespace norvik50 {

// A date literal.
//  - server: CONVERT(DATETIME, 'yyyy-mm-dd hh:nn:ss', 102) of the value as
//    it is formatted, the time always present, whatever the locale writes;
//  - desktop: #yyyy/mm/dd# or, when the value has a time of day (its Double
//    differs from its Long rounded half to even), #yyyy/mm/dd hh:nn:ss#; the
//    value is made a Date with ConvertToType (today for what is no date).
// The desktop dialect first reads the value as a Double and a Long without
// fallback, so it raises type mismatch (13) for a text that is no number
// (a date written as text included), overflow (6) beyond a Long and invalid
// use of Null (94). Both raise what the Format engine raises.
std::u16string SqlDate(const Variant& value, bool server);

// The value as a Double (ConvertToType; 0 for what is no number) in the
// runtime's shortest text form with "." for ",": 1234.5, 0.1, 1E+20.
// Never raises.
std::u16string SqlDouble(const Variant& value);

// name=literal pairs joined by " AND " from an array holding name, value,
// name, value ...: Dates as desktop date literals, texts in double quotes
// (not escaped), Booleans as TRUE/FALSE, everything else through
// SqlDouble (so Null gives 0). "" for an array with fewer than two places
// or without bounds. A failing step is skipped (a name without a value
// gives "name="). Never raises.
std::u16string SqlFilter(const SafeArray& params);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_SQL_LITERALS_H_
