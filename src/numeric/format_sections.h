// The pieces of the Format engine behind FormatValue: splitting a pattern
// into sections, telling date sections from number sections, and writing a
// number or a date through one section.
#ifndef NORVIK50_SRC_NUMERIC_FORMAT_SECTIONS_H_
#define NORVIK50_SRC_NUMERIC_FORMAT_SECTIONS_H_

#include <string>
#include <string_view>

#include "norvik50/locale.h"
#include "norvik50/values.h"
#include "numeric/decimal_digits.h"

namespace norvik50 {

// Splits `pattern` at each ";" outside quotes and escapes into at most
// three sections (positive, negative, zero); anything after a third ";"
// is not used. Returns the number of sections (at least 1).
int SplitSections(std::u16string_view pattern, std::u16string_view (&sections)[3]);

// Whether `lower` (a lower-case letter) starts a date field: c d w m q y h n
// s (and t, as ttttt). One list for telling sections apart and for writing
// them, so the two never disagree.
constexpr bool IsDateFieldLetter(char16_t lower) {
  return std::u16string_view(u"cdwmqyhns").find(lower) != std::u16string_view::npos;
}

// Whether the first placeholder of `section` is a date letter rather than
// a digit placeholder.
bool IsDateSection(std::u16string_view section);

// Appends the magnitude of `number` written through the number section
// `section` (the caller writes any sign). Rounds `number` in place.
void FormatNumberSection(DecimalDigits number, std::u16string_view section, const Locale& locale,
                         std::u16string& out);

// Appends the date `c` written through the date section `section`.
void FormatDateSection(const CivilDateTime& c, std::u16string_view section, const Locale& locale,
                       std::u16string& out);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_FORMAT_SECTIONS_H_
