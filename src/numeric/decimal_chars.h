// Rewriting the numbers inside an expression text (a filter or a formula)
// into "." decimal notation without thousands separators
// (tklReplaceDecimalChars).
#ifndef NORVIK50_SRC_NUMERIC_DECIMAL_CHARS_H_
#define NORVIK50_SRC_NUMERIC_DECIMAL_CHARS_H_

#include <string>
#include <string_view>

namespace norvik50 {

// `source` with:
//  1. every run of blanks outside double quotes collapsed to one;
//  2. in each Format call ("format(" or "format (", any case) the commas of
//     the last quoted literal (its pattern) turned into points, the call
//     rebuilt as "(term) " and the whole text trimmed;
//  3. each number outside double quotes that ends at a blank, ";" or ")"
//     (a separator just before that end is punctuation, not part of the
//     number) freed of its thousands separators ("." when
//     `german_to_english`, else ",") and, when it is then numeric in the
//     current locale, written with "." for every remaining ",". A number
//     that ends the text is left as it stands.
// German: "Betrag > 1.234,5 AND Menge = 3 " -> "Betrag > 1234.5 AND Menge = 3 ".
// Never raises: the first failure (a position past 32767 included) ends it
// with the text as transformed so far.
std::u16string ReplaceDecimalChars(std::u16string_view source, bool german_to_english);

// Step 2 of ReplaceDecimalChars on its own: every Format call ("format("
// or "format (", any case, nested ones too) with the commas of the last
// quoted literal of its term turned into points and ") " after its
// closing bracket; the text trimmed when a call was rebuilt. False when a
// position past 32767 stopped it (`text` then as transformed so far, and
// the member ends there too). Never raises.
bool RewriteFormatCalls(std::u16string& text);

// Step 3 of ReplaceDecimalChars on its own: the numbers of `text` freed of
// their thousands separators and written with ".". The search for the next
// number resumes one unit after the end of the last one counted in the
// text before that number was shortened, so it skips as many units as the
// number lost. A failure, or a position past 32767, ends it with the text
// as transformed so far. Never raises.
std::u16string RewriteNumbers(std::u16string_view text, bool german_to_english);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_DECIMAL_CHARS_H_
