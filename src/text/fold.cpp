#include "text/fold.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

#include "norvik50/locale.h"

namespace norvik50 {
namespace {

// One table of all 65536 units per folding option, built on first use: a
// lookup is far cheaper than a call into ICU for every unit of a long text.
using FoldTable = std::array<char16_t, 0x10000>;

std::unique_ptr<FoldTable> BuildTable(uint32_t options) {
  auto table = std::make_unique<FoldTable>();
  for (uint32_t c = 0; c < 0x10000; ++c) {
    const UChar32 folded = u_foldCase(static_cast<UChar32>(c), options);
    // Simple folding of a BMP unit stays in the BMP; guard anyway so a unit
    // is never replaced by half a pair.
    (*table)[c] =
        folded >= 0 && folded < 0x10000 ? static_cast<char16_t>(folded) : static_cast<char16_t>(c);
  }
  return table;
}

bool IsTurkic() {
  const std::string& name = CurrentLocale().icu_name;
  return name.rfind("tr", 0) == 0 || name.rfind("az", 0) == 0;
}

const FoldTable& CurrentTable() {
  static const std::unique_ptr<FoldTable> kDefault = BuildTable(U_FOLD_CASE_DEFAULT);
  if (!IsTurkic()) return *kDefault;
  static const std::unique_ptr<FoldTable> kTurkic = BuildTable(U_FOLD_CASE_EXCLUDE_SPECIAL_I);
  return *kTurkic;
}

}  // namespace

void FoldInto(std::u16string_view text, char16_t* out) {
  const FoldTable& table = CurrentTable();
  for (std::size_t i = 0; i < text.size(); ++i) out[i] = table[text[i]];
}

FoldedPrefix::FoldedPrefix(std::u16string_view folded_prefix)
    : prefix_(folded_prefix), table_(CurrentTable().data()) {
  // Where "I" folds to the dotless i, ASCII letters do not fold by their
  // case bit alone.
  const bool ascii_rules = table_[u'I'] == u'i';
  const bool ascii_prefix =
      std::all_of(folded_prefix.begin(), folded_prefix.end(), [](char16_t c) { return c < 0x80; });
  if (!ascii_rules || !ascii_prefix || folded_prefix.empty()) return;
  case_bits_.reserve(folded_prefix.size());
  for (char16_t c : folded_prefix) case_bits_ += (c >= u'a' && c <= u'z') ? u'\x20' : u'\0';
}

namespace {

// Eight units in one register, compared at once.
using Units8 = uint16_t __attribute__((vector_size(16)));

Units8 Load8(const char16_t* units) {
  Units8 loaded;
  std::memcpy(&loaded, units, sizeof loaded);
  return loaded;
}

bool AnyUnit(Units8 units) {
  uint64_t halves[2];
  std::memcpy(halves, &units, sizeof halves);
  return (halves[0] | halves[1]) != 0;
}

}  // namespace

// A capital ASCII letter with its case bit set is its small letter, and
// an ASCII unit folds to nothing else; a text unit beyond ASCII may still
// fold to the prefix's (the Kelvin sign to "k"), so the table decides.
FoldedPrefix::AsciiVerdict FoldedPrefix::CompareAscii(const char16_t* text) const {
  const std::size_t size = prefix_.size();
  const char16_t* bits = case_bits_.data();
  const char16_t* prefix = prefix_.data();
  if (size < 8) {
    unsigned differ = 0;
    unsigned units = 0;
    for (std::size_t i = 0; i < size; ++i) {
      differ |= static_cast<unsigned>((text[i] | bits[i]) ^ prefix[i]);
      units |= text[i];
    }
    if (differ == 0) return AsciiVerdict::kMatch;
    return units < 0x80 ? AsciiVerdict::kNoMatch : AsciiVerdict::kAskTable;
  }
  Units8 differ = {};
  Units8 units = {};
  const auto compare_at = [&](std::size_t i) {
    const Units8 block = Load8(text + i);
    differ |= (block | Load8(bits + i)) ^ Load8(prefix + i);
    units |= block;
  };
  std::size_t i = 0;
  for (; i + 8 <= size; i += 8) compare_at(i);
  // The last units, in a block that overlaps the one before.
  if (i < size) compare_at(size - 8);
  if (!AnyUnit(differ)) return AsciiVerdict::kMatch;
  const Units8 beyond_ascii = {0xFF80, 0xFF80, 0xFF80, 0xFF80, 0xFF80, 0xFF80, 0xFF80, 0xFF80};
  return AnyUnit(units & beyond_ascii) ? AsciiVerdict::kAskTable : AsciiVerdict::kNoMatch;
}

// Folding a unit that is already folded leaves it as it is (case folding
// is stable), so comparing every unit folded equals comparing each as it
// is and then folded.
bool FoldedPrefix::StartsByTable(std::u16string_view text) const {
  unsigned differ = 0;
  for (std::size_t i = 0; i < prefix_.size(); ++i) differ |= table_[text[i]] ^ prefix_[i];
  return differ == 0;
}

bool StartsWithFolded(std::u16string_view text, std::u16string_view folded_prefix) {
  return FoldedPrefix(folded_prefix).Starts(text);
}

std::u16string FoldText(std::u16string_view text) {
  std::u16string out(text.size(), u'\0');
  FoldInto(text, out.data());
  return out;
}

}  // namespace norvik50
