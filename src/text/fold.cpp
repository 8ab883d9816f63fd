#include "text/fold.h"

#include <unicode/uchar.h>

#include <array>
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

std::u16string FoldText(std::u16string_view text) {
  std::u16string out(text.size(), u'\0');
  FoldInto(text, out.data());
  return out;
}

}  // namespace norvik50
