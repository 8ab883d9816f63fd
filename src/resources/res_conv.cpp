#include "resources/res_conv.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory_resource>
#include <vector>

#include "norvik50/lib.h"
#include "numeric/convert_to_type.h"
#include "numeric/format.h"
#include "resources/piece_text.h"

namespace norvik50 {
namespace {

constexpr int32_t kStringType = 8;

struct Filled {
  std::u16string_view placeholder;
  std::u16string text;
};

Filled Written(const Variant& value) {
  switch (value.type()) {
    case VarType::kInteger:
    case VarType::kLong:
    case VarType::kByte:
      return {u"%d", FormatValue(value, u"0")};
    case VarType::kSingle:
    case VarType::kDouble:
      return {u"%d", FormatValue(value, u"Standard")};
    case VarType::kCurrency:
      return {u"%d", FormatValue(value, u"Currency")};
    case VarType::kDate:
      return {u"%d", FormatValue(value, u"Short Date")};
    case VarType::kBoolean:
      // Not the named format "True/False": the engine reads this text as
      // a pattern of its own, whatever that makes of -1.
      return {u"%d", FormatValue(value, u"True / False")};
    default:
      return {u"%s", ConvertToType(kStringType, value).as_string()};
  }
}

// A lone element "^a|b|c" stands for the texts a, b and c.
std::optional<std::vector<Variant>> PackedValues(const SafeArray& values) {
  if (!values.is_bounded() || values.ubound() != 0 || values.lbound() > 0) return std::nullopt;
  const Variant text = ConvertToType(kStringType, values.at(0));
  const std::u16string& packed = text.as_string();
  if (packed.empty() || packed.front() != u'^') return std::nullopt;
  std::vector<Variant> parts;
  if (packed.size() == 1) return parts;
  for (std::size_t start = 1;;) {
    const std::size_t bar = packed.find(u'|', start);
    parts.emplace_back(packed.substr(start, bar == std::u16string::npos ? bar : bar - start));
    if (bar == std::u16string::npos) break;
    start = bar + 1;
  }
  return parts;
}

// A copy of `text` in `memory`, alive as long as it.
std::u16string_view KeepIn(std::pmr::memory_resource& memory, std::u16string_view text) {
  if (text.empty()) return {};
  auto* units =
      static_cast<char16_t*>(memory.allocate(text.size() * sizeof(char16_t), alignof(char16_t)));
  std::copy(text.begin(), text.end(), units);
  return std::u16string_view(units, text.size());
}

// "\t", "\r" and "\n" as tab, CR and LF, in one pass. Turning them one
// escape after the other gives the same: a control character put in is
// neither a backslash nor a letter, so it never starts or ends another.
std::u16string TurnEscapes(std::u16string text) {
  if (text.find(u'\\') == std::u16string::npos) return text;
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\\' && i + 1 < text.size()) {
      const char16_t letter = text[i + 1];
      const char16_t control = letter == u't'   ? u'\t'
                               : letter == u'r' ? u'\r'
                               : letter == u'n' ? u'\n'
                                                : 0;
      if (control != 0) {
        out.push_back(control);
        ++i;
        continue;
      }
    }
    out.push_back(text[i]);
  }
  return out;
}

// The values put in one after the other, each where the first placeholder
// of its kind stands at that moment, in a text that already holds the
// values before it. Only the two units replaced and their neighbours
// change, so after a value is in, its kind's next placeholder lies no
// earlier than one unit before it, and the other kind's first placeholder
// either stays where it was or is a new one made by the value's text or
// its edges. Everything before the unit ahead of both first placeholders
// is final and leaves the piece list as it goes.
class Filler {
 public:
  explicit Filler(std::u16string_view source)
      : memory_(first_block_.data(), first_block_.size()), text_(source, {u"%s", u"%d"}, &memory_) {
    first_s_ = text_.Find(kText, text_.Begin());
    first_d_ = text_.Find(kNumber, text_.Begin());
  }

  // Puts `value` in; false once no placeholder is left, when no later
  // value can make one any more.
  bool Put(const Variant& value) {
    if (!first_s_.found() && !first_d_.found()) return false;
    Filled filled;
    try {
      filled = Written(value);
    } catch (...) {
      return true;  // a value that cannot be written is skipped
    }
    const bool is_text = filled.placeholder == u"%s";
    PieceText::Mark& mine = is_text ? first_s_ : first_d_;
    PieceText::Mark& other = is_text ? first_d_ : first_s_;
    if (!mine.found()) return true;  // dropped without notice
    const std::u16string_view with = KeepIn(memory_, filled.text);
    const std::size_t at = mine.index;
    const PieceText::Mark before = text_.Replace(mine, with, other);
    mine = text_.Find(is_text ? kText : kNumber, before);
    if (!other.found() || other.index > at) {
      // A new one starts at the unit before the value or inside it.
      const PieceText::Mark made =
          text_.Find(is_text ? kNumber : kText, before, std::min(other.index, at + with.size()));
      if (made.found()) other = made;
    }
    const std::size_t first = std::min(first_s_.index, first_d_.index);
    text_.MovePiecesBefore(first == 0 ? 0 : first - 1, done_);
    return true;
  }

  std::u16string Result() && {
    text_.MovePiecesBefore(PieceText::kNone, done_);
    return TurnEscapes(std::move(done_));
  }

 private:
  static constexpr int kText = 0;    // "%s"
  static constexpr int kNumber = 1;  // "%d"

  // The pieces and the texts put in live in one arena, on the stack for an
  // everyday message; a long text takes more from the heap as it goes.
  std::array<std::byte, 2048> first_block_;
  std::pmr::monotonic_buffer_resource memory_;
  PieceText text_;
  PieceText::Mark first_s_, first_d_;
  std::u16string done_;  // the units no later value can change
};

}  // namespace

std::u16string ResConv(std::u16string_view source, const SafeArray& vars) {
  Filler filler(source);
  if (const auto packed = PackedValues(vars)) {
    for (const Variant& value : *packed) {
      if (!filler.Put(value)) break;
    }
  } else if (vars.is_bounded()) {
    // The values are read from index 0 to the upper bound; an index below
    // the lower bound fails and is skipped like any failing step.
    for (int64_t i = std::max<int64_t>(0, vars.lbound()); i <= vars.ubound(); ++i) {
      if (!filler.Put(vars.at(i))) break;
    }
  }
  return std::move(filler).Result();
}

std::u16string LIB::tklResConv(std::u16string_view sSource, const SafeArray& Vars) {
  try {
    return ResConv(sSource, Vars);
  } catch (...) {
    return std::u16string(sSource);
  }
}

}  // namespace norvik50
