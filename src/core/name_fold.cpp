#include "core/name_fold.h"

#include <unicode/uchar.h>

namespace norvik50 {

std::u16string FoldName(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& c : folded) {
    // Simple folding with the default (non-Turkic) rules: the same in every
    // locale, and it covers the whole Windows-1252 range, not only ASCII.
    const UChar32 f = u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT);
    if (f >= 0 && f < 0x10000) c = static_cast<char16_t>(f);
  }
  return folded;
}

}  // namespace norvik50
