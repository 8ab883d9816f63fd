// The case fold that makes names case-insensitive while they keep the case
// they were written with: registry key and value names, and the components
// of Windows paths looked up on a case-sensitive disk.
#ifndef NORVIK50_SRC_CORE_NAME_FOLD_H_
#define NORVIK50_SRC_CORE_NAME_FOLD_H_

#include <string>
#include <string_view>

namespace norvik50 {

// The folded form of a name: equal for names that differ only in case
// (ä/Ä, š/Š, œ/Œ, ÿ/Ÿ as well as ASCII). One unit at a time, so the folded
// name has the length of the name, and independent of the current locale,
// so that a name written under one locale is found under every other.
std::u16string FoldName(std::u16string_view name);

// One unit of FoldName: what `c` folds to. ASCII is answered here, without
// a call, as path comparisons meet it most.
char16_t FoldNonAsciiUnit(char16_t c);
inline char16_t FoldNameUnit(char16_t c) {
  if (c >= 0x80) return FoldNonAsciiUnit(c);
  return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + 32) : c;
}

// Whether two names are the same but for case, as FoldName compares them,
// without building either folded copy.
inline bool SameNameWithoutCase(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && FoldNameUnit(a[i]) != FoldNameUnit(b[i])) return false;
  }
  return true;
}

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_NAME_FOLD_H_
