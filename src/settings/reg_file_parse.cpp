// Reading .reg files. The parser only builds a RegFile; nothing reaches the
// store until the whole file has been read without error.
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/registry.h"
#include "settings/reg_file.h"
#include "settings/registry_names.h"
#include "settings/value_bytes.h"

namespace norvik50::settings {
namespace {

constexpr std::u16string_view kHeader4 = u"REGEDIT4";
constexpr std::u16string_view kHeader5 = u"Windows Registry Editor Version 5.00";

// The file's text and format, from its byte-order mark and header.
std::u16string DecodeFile(std::string_view bytes) {
  if (bytes.size() >= 2 && static_cast<uint8_t>(bytes[0]) == 0xFF &&
      static_cast<uint8_t>(bytes[1]) == 0xFE) {
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
      text.push_back(static_cast<char16_t>(static_cast<uint8_t>(bytes[i]) |
                                           (static_cast<uint8_t>(bytes[i + 1]) << 8)));
    }
    return text;
  }
  if (bytes.size() >= 3 && bytes.substr(0, 3) == "\xEF\xBB\xBF") {
    return FromUtf8(bytes.substr(3));
  }
  // A version 5 file saved as UTF-8 by an editor; REGEDIT4 is ANSI.
  if (bytes.starts_with("Windows Registry Editor")) return FromUtf8(bytes);
  return BytesToText(bytes);
}

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t'; }

std::u16string_view Trim(std::u16string_view s) {
  while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return s;
}

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// A quoted string at the start of `s` (escapes \\ and \"); advances `s`
// past the closing quote. nullopt when it is not closed.
std::optional<std::u16string> QuotedString(std::u16string_view& s) {
  if (s.empty() || s.front() != u'"') return std::nullopt;
  std::u16string out;
  for (std::size_t i = 1; i < s.size(); ++i) {
    const char16_t c = s[i];
    if (c == u'\\' && i + 1 < s.size() && (s[i + 1] == u'\\' || s[i + 1] == u'"')) {
      out.push_back(s[++i]);
    } else if (c == u'"') {
      s.remove_prefix(i + 1);
      return out;
    } else {
      out.push_back(c);
    }
  }
  return std::nullopt;
}

// "01,ff, 10" -> bytes; nullopt for anything but two-digit hex bytes.
std::optional<std::string> HexList(std::u16string_view s) {
  std::string bytes;
  s = Trim(s);
  if (s.empty()) return bytes;
  while (true) {
    const std::size_t comma = s.find(u',');
    const std::u16string_view part = Trim(s.substr(0, comma));
    if (part.empty() && comma == std::u16string_view::npos && !bytes.empty()) break;  // "01,"
    if (part.empty() || part.size() > 2) return std::nullopt;
    int value = 0;
    for (const char16_t c : part) {
      const int d = HexDigit(c);
      if (d < 0) return std::nullopt;
      value = value * 16 + d;
    }
    bytes.push_back(static_cast<char>(value));
    if (comma == std::u16string_view::npos) break;
    s.remove_prefix(comma + 1);
  }
  return bytes;
}

struct Parser {
  RegFormat format = RegFormat::kVersion5;
  RegFile file;
  RegParseError& error;
  std::size_t line_no = 0;
  bool skipping = false;  // inside a [-KEY] block

  bool Fail(std::string message) {
    error.line = line_no;
    error.message = std::move(message);
    return false;
  }

  bool KeyLine(std::u16string_view line) {
    const std::size_t close = line.rfind(u']');
    if (close == std::u16string_view::npos || Trim(line.substr(close + 1)).size() != 0) {
      return Fail("a key line must end in ']'");
    }
    std::u16string_view name = line.substr(1, close - 1);
    RegFileKey key;
    if (!name.empty() && name.front() == u'-') {
      key.remove = true;
      name.remove_prefix(1);
    }
    const auto split = SplitFullKeyName(name);
    if (!split) return Fail("unknown root key in [" + ToUtf8(name) + "]");
    if (!SplitKeyPath(split->second)) return Fail("bad key path [" + ToUtf8(name) + "]");
    key.root = split->first;
    key.path = split->second;
    skipping = key.remove;
    file.keys.push_back(std::move(key));
    return true;
  }

  bool ValueLine(std::u16string_view line) {
    if (file.keys.empty()) return Fail("a value before the first key");
    RegFileValue value;
    if (line.front() == u'@') {
      line.remove_prefix(1);
    } else {
      auto name = QuotedString(line);
      if (!name) return Fail("the value name is not a closed quoted string");
      value.name = std::move(*name);
      if (!IsValidValueName(value.name)) return Fail("the value name is too long");
    }
    line = Trim(line);
    if (line.empty() || line.front() != u'=') return Fail("'=' expected after the value name");
    line = Trim(line.substr(1));
    if (line == u"-") {
      value.remove = true;
    } else if (!line.empty() && line.front() == u'"') {
      auto text = QuotedString(line);
      if (!text || !Trim(line).empty()) return Fail("the text is not a closed quoted string");
      value.type = REG_SZ;
      value.data = StoredForm(REG_SZ, ToUtf8(*text));
    } else if (line.starts_with(u"dword:")) {
      const std::u16string_view digits = Trim(line.substr(6));
      if (digits.empty() || digits.size() > 8) return Fail("dword: needs 1 to 8 hex digits");
      uint32_t v = 0;
      for (const char16_t c : digits) {
        const int d = HexDigit(c);
        if (d < 0) return Fail("dword: needs 1 to 8 hex digits");
        v = v * 16 + static_cast<uint32_t>(d);
      }
      value.type = REG_DWORD;
      value.data = DwordBytes(v);
    } else if (line.starts_with(u"hex")) {
      std::u16string_view rest = line.substr(3);
      int32_t type = REG_BINARY;
      if (!rest.empty() && rest.front() == u'(') {
        const std::size_t close = rest.find(u')');
        if (close == std::u16string_view::npos || close < 2 || close > 9) {
          return Fail("hex(N): needs a hex type number");
        }
        uint32_t t = 0;
        for (const char16_t c : rest.substr(1, close - 1)) {
          const int d = HexDigit(c);
          if (d < 0) return Fail("hex(N): needs a hex type number");
          t = t * 16 + static_cast<uint32_t>(d);
        }
        type = static_cast<int32_t>(t);
        rest.remove_prefix(close + 1);
      }
      if (rest.empty() || rest.front() != u':') return Fail("':' expected after hex");
      auto bytes = HexList(rest.substr(1));
      if (!bytes) return Fail("hex data must be two-digit bytes separated by commas");
      value.type = type;
      value.data = HexEntryToStored(type, *bytes, format);
    } else {
      return Fail("unknown value form");
    }
    if (!skipping) file.keys.back().values.push_back(std::move(value));
    return true;
  }
};

}  // namespace

std::optional<RegFile> ParseRegFile(std::string_view bytes, RegParseError& error) {
  const std::u16string text = DecodeFile(bytes);
  Parser p{RegFormat::kVersion5, {}, error};
  bool header = false;
  std::u16string logical;
  std::size_t logical_start = 0;
  std::size_t pos = 0;
  std::size_t line_no = 0;
  while (pos <= text.size()) {
    std::size_t end = text.find_first_of(u"\r\n", pos);
    if (end == std::u16string::npos) end = text.size();
    const std::u16string_view raw = std::u16string_view(text).substr(pos, end - pos);
    ++line_no;
    if (end < text.size() && text[end] == u'\r' && end + 1 < text.size() &&
        text[end + 1] == u'\n') {
      ++end;
    }
    pos = end + 1;
    // A line ending in "\" continues on the next one (long hex data).
    const std::u16string_view trimmed = Trim(raw);
    if (logical.empty()) logical_start = line_no;
    logical += logical.empty() ? trimmed : Trim(raw);
    if (!logical.empty() && logical.back() == u'\\' && logical.front() != u'[' &&
        pos <= text.size()) {
      logical.pop_back();
      continue;
    }
    std::u16string line;
    line.swap(logical);
    p.line_no = logical_start;
    if (line.empty() || line[0] == u';') continue;
    if (!header) {
      if (line == kHeader4) {
        p.format = p.file.format = RegFormat::kRegedit4;
      } else if (line == kHeader5) {
        p.format = p.file.format = RegFormat::kVersion5;
      } else {
        error.line = logical_start;
        error.message =
            "not a .reg file: the first line must be \"REGEDIT4\" or "
            "\"Windows Registry Editor Version 5.00\"";
        return std::nullopt;
      }
      header = true;
      continue;
    }
    const bool ok = line[0] == u'[' ? p.KeyLine(line) : p.ValueLine(line);
    if (!ok) return std::nullopt;
  }
  if (!header) {
    error.line = 0;
    error.message = "not a .reg file: it is empty";
    return std::nullopt;
  }
  return std::move(p.file);
}

}  // namespace norvik50::settings
