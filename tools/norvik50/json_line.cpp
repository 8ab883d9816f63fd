#include "json_line.h"

#include <cstdio>

#include "norvik50/encoding.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

constexpr char16_t kMark = 0xFDD0;      // a noncharacter: never in a real text by design
constexpr char16_t kKeptBase = 0xE000;  // U+E000..U+E7FF stand for 0xD800..0xDFFF
constexpr std::string_view kMarkUtf8 = "\xEF\xB7\x90";

bool IsHigh(unsigned unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLow(unsigned unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool IsSurrogate(unsigned unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

// The code unit of the "\uXXXX" escape at `pos`, or nullopt when there is none.
std::optional<unsigned> EscapedUnit(std::string_view text, std::size_t pos) {
  if (pos + 6 > text.size() || text[pos] != '\\' || text[pos + 1] != 'u') return std::nullopt;
  unsigned unit = 0;
  for (std::size_t i = pos + 2; i < pos + 6; ++i) {
    const char c = text[i];
    unsigned digit = 0;
    if (c >= '0' && c <= '9') {
      digit = static_cast<unsigned>(c - '0');
    } else if (c >= 'a' && c <= 'f') {
      digit = static_cast<unsigned>(c - 'a' + 10);
    } else if (c >= 'A' && c <= 'F') {
      digit = static_cast<unsigned>(c - 'A' + 10);
    } else {
      return std::nullopt;
    }
    unit = unit * 16 + digit;
  }
  return unit;
}

void AppendEscape(std::string& out, unsigned unit) {
  char buffer[8];
  std::snprintf(buffer, sizeof buffer, "\\u%04x", unit);
  out += buffer;
}

// The line as nlohmann may read it: unpaired surrogate escapes and real
// marks rewritten as the document keeps them. Also the depth check, since
// this is the one pass that walks the text anyway. nullopt with `why` when
// the line nests too deeply or closes more than it opened.
std::optional<std::string> PrepareLine(std::string_view line, std::string& why) {
  std::string out;
  out.reserve(line.size());
  int depth = 0;
  bool in_string = false;
  for (std::size_t i = 0; i < line.size();) {
    const char c = line[i];
    if (!in_string) {
      if (c == '"') {
        in_string = true;
      } else if (c == '[' || c == '{') {
        if (++depth > kMaxNesting) {
          why = "nested deeper than " + std::to_string(kMaxNesting) + " levels";
          return std::nullopt;
        }
      } else if ((c == ']' || c == '}') && --depth < 0) {
        why = "not valid JSON";
        return std::nullopt;
      }
      out += c;
      ++i;
      continue;
    }
    if (c == '"') {
      in_string = false;
      out += c;
      ++i;
    } else if (line.compare(i, kMarkUtf8.size(), kMarkUtf8) == 0) {
      out.append(kMarkUtf8).append(kMarkUtf8);
      i += kMarkUtf8.size();
    } else if (c != '\\') {
      out += c;
      ++i;
    } else if (const auto unit = EscapedUnit(line, i); !unit) {
      out.append(line.substr(i, 2));  // any other escape, kept as it is
      i += 2;
    } else if (const auto next = EscapedUnit(line, i + 6); IsHigh(*unit) && next && IsLow(*next)) {
      out.append(line.substr(i, 12));  // a proper pair
      i += 12;
    } else {
      if (IsSurrogate(*unit)) {
        AppendEscape(out, kMark);
        AppendEscape(out, kKeptBase + (*unit - 0xD800));
      } else if (*unit == kMark) {
        AppendEscape(out, kMark);
        AppendEscape(out, kMark);
      } else {
        out.append(line.substr(i, 6));
      }
      i += 6;
    }
  }
  return out;
}

// The unit a kept surrogate stands for, when `text` at `pos` holds the
// UTF-8 form of U+E000..U+E7FF (EE 80 80 .. EE 9F BF).
std::optional<unsigned> KeptSurrogateAt(std::string_view text, std::size_t pos) {
  if (pos + 3 > text.size()) return std::nullopt;
  const auto b0 = static_cast<unsigned char>(text[pos]);
  const auto b1 = static_cast<unsigned char>(text[pos + 1]);
  const auto b2 = static_cast<unsigned char>(text[pos + 2]);
  if (b0 != 0xEE || b1 < 0x80 || b1 > 0x9F || b2 < 0x80 || b2 > 0xBF) return std::nullopt;
  const unsigned character = 0xE000u | ((b1 & 0x3Fu) << 6) | (b2 & 0x3Fu);
  return 0xD800u + (character - kKeptBase);
}

}  // namespace

std::optional<json> ReadJsonLine(std::string_view line, std::string& why) {
  const auto prepared = PrepareLine(line, why);
  if (!prepared) return std::nullopt;
  json value = json::parse(*prepared, nullptr, /*allow_exceptions=*/false);
  if (value.is_discarded()) {
    why = "not valid JSON";
    return std::nullopt;
  }
  return value;
}

std::string WriteJsonLine(const json& value) {
  // Invalid UTF-8 inside strings is replaced rather than aborting the dump.
  std::string text = value.dump(-1, ' ', false, json::error_handler_t::replace);
  if (text.find(kMarkUtf8) == std::string::npos) return text;
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    if (text.compare(i, kMarkUtf8.size(), kMarkUtf8) != 0) {
      out += text[i++];
      continue;
    }
    i += kMarkUtf8.size();
    if (text.compare(i, kMarkUtf8.size(), kMarkUtf8) == 0) {
      out.append(kMarkUtf8);  // a real U+FDD0
      i += kMarkUtf8.size();
    } else if (const auto unit = KeptSurrogateAt(text, i)) {
      AppendEscape(out, *unit);
      i += 3;
    } else {
      out.append(kMarkUtf8);
    }
  }
  return out;
}

std::u16string WireTextToUtf16(std::string_view text) {
  std::u16string units = FromUtf8(text);
  if (units.find(kMark) == std::u16string::npos) return units;
  std::u16string out;
  out.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t c = units[i];
    if (c == kMark && i + 1 < units.size()) {
      const char16_t next = units[i + 1];
      if (next == kMark) {
        out += kMark;
        ++i;
        continue;
      }
      if (next >= kKeptBase && next <= kKeptBase + 0x7FF) {
        out += static_cast<char16_t>(0xD800 + (next - kKeptBase));
        ++i;
        continue;
      }
    }
    out += c;
  }
  return out;
}

std::string Utf16ToWireText(std::u16string_view text) {
  std::u16string kept;
  kept.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (IsHigh(c) && i + 1 < text.size() && IsLow(text[i + 1])) {
      kept += c;
      kept += text[++i];
    } else if (IsSurrogate(c)) {
      kept += kMark;
      kept += static_cast<char16_t>(kKeptBase + (c - 0xD800));
    } else if (c == kMark) {
      kept += kMark;
      kept += kMark;
    } else {
      kept += c;
    }
  }
  return ToUtf8(kept);
}

}  // namespace norvik50::cli
