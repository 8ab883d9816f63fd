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

// Tells which texts begin with a prefix without case, for walks over many
// texts (the rows of a list), where the comparing is what costs: the
// folding table of the current locale is looked up once, not per text, a
// text is compared without an early exit (rows sharing a long start cost
// no mispredicted branches), and an ASCII prefix is compared without the
// table at all as long as the text's units are ASCII too.
class FoldedPrefix {
 public:
  // `folded_prefix` is a FoldText result and must outlive this.
  explicit FoldedPrefix(std::u16string_view folded_prefix);
  bool Starts(std::u16string_view text) const {
    if (text.size() < prefix_.size()) return false;
    if (!case_bits_.empty()) {
      const AsciiVerdict verdict = CompareAscii(text.data());
      if (verdict != AsciiVerdict::kAskTable) return verdict == AsciiVerdict::kMatch;
    }
    return StartsByTable(text);
  }

 private:
  enum class AsciiVerdict { kMatch, kNoMatch, kAskTable };
  // The prefix's units against the text's, eight at a time.
  AsciiVerdict CompareAscii(const char16_t* text) const;
  bool StartsByTable(std::u16string_view text) const;

  std::u16string_view prefix_;
  const char16_t* table_;
  // Per unit of an ASCII prefix, the bit a capital letter lacks (0x20 for
  // a letter, 0 for the rest); empty where the table must be asked.
  std::u16string case_bits_;
};

// Whether `text` begins with `folded_prefix` (a FoldText result) without
// case.
bool StartsWithFolded(std::u16string_view text, std::u16string_view folded_prefix);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_FOLD_H_
