#include "core/name_fold.h"

#include <unicode/uchar.h>

namespace norvik50 {

char16_t FoldNonAsciiUnit(char16_t c) {
  // Simple folding with the default (non-Turkic) rules: the same in every
  // locale, and it covers the whole Windows-1252 range, not only ASCII.
  const UChar32 f = u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT);
  return (f >= 0 && f < 0x10000) ? static_cast<char16_t>(f) : c;
}

std::u16string FoldName(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& c : folded) c = FoldNameUnit(c);
  return folded;
}

}  // namespace norvik50
