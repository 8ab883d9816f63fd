// Case-insensitive text order in the current locale, through ICU's
// collation at secondary strength (letters and accents count, case not).
#ifndef NORVIK50_SRC_TEXT_COLLATION_H_
#define NORVIK50_SRC_TEXT_COLLATION_H_

#include <string>
#include <string_view>

namespace norvik50 {

// <0, 0 or >0 as `a` sorts before, with or after `b`; «abc» and «ABC»
// compare equal.
int CompareIgnoringCase(std::u16string_view a, std::u16string_view b);

// A byte string whose plain byte order is the order of CompareIgnoringCase.
std::string CollationKey(std::u16string_view text);
// Appends CollationKey(text) to `out`.
void AppendCollationKey(std::u16string_view text, std::string& out);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_COLLATION_H_
