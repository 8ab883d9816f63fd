// Case folding for the case-insensitive searches of the text toolkit.
//
// Each UTF-16 unit is folded on its own with ICU's simple case folding, so a
// folded text has exactly the length of its original and every position found
// in the folded copy is a position in the original. Texts are folded once per
// search, never per comparison.
#ifndef NORVIK50_SRC_TEXT_FOLD_H_
#define NORVIK50_SRC_TEXT_FOLD_H_

#include <string>
#include <string_view>

namespace norvik50 {

// `text` with every unit folded in the current locale (Turkic locales keep
// the dotted and dotless i apart); surrogate halves stay as they are. Same
// length as `text`.
std::u16string FoldText(std::u16string_view text);

// Writes the folded units of `text` to out[0..text.size()).
void FoldInto(std::u16string_view text, char16_t* out);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_FOLD_H_
