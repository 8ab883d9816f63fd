// Whether a word of a text is a number as the current locale writes it.
#ifndef NORVIK50_SRC_TEXT_NUMERIC_WORD_H_
#define NORVIK50_SRC_TEXT_NUMERIC_WORD_H_

#include <string_view>

#include "norvik50/locale.h"

namespace norvik50 {

// True when `word` is a number written in `locale`'s notation: an optional
// leading "+" or "-", ASCII digits, the thousands separator only between
// groups of three digits (the first group one to three digits), and at
// most one decimal separator with at least one digit after it. So German
// "1.234,56", "-0,5", ",5" and "1234" are words of numbers, "1.5", "12,"
// and "1,234.56" are not; English reads them the other way round. No
// blanks, currency, exponent or radix forms: those are not one word.
bool IsNumericWord(std::u16string_view word, const Locale& locale);
// The same in the current locale.
bool IsNumericWord(std::u16string_view word);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_NUMERIC_WORD_H_
