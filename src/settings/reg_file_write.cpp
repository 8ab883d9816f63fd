// Writing .reg files, in the layout the registry editor uses, so that our
// files import on Windows and a file exported, imported and exported again
// comes out byte for byte the same.
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/registry.h"
#include "settings/reg_file.h"
#include "settings/registry_names.h"
#include "settings/value_bytes.h"

namespace norvik50::settings {
namespace {

// Hex data is wrapped like the registry editor wraps it: a line ends with
// ",\" once it passes this many characters, and goes on indented by two.
constexpr std::size_t kWrapColumn = 76;

std::u16string Quoted(std::u16string_view text) {
  std::u16string out = u"\"";
  for (const char16_t c : text) {
    if (c == u'\\' || c == u'"') out.push_back(u'\\');
    out.push_back(c);
  }
  out.push_back(u'"');
  return out;
}

std::u16string HexByte(uint8_t b) {
  static constexpr char16_t kDigits[] = u"0123456789abcdef";
  return {kDigits[b >> 4], kDigits[b & 0xF]};
}

// `prefix` ("\"name\"=hex(2):") followed by the bytes, wrapped.
std::u16string HexLine(std::u16string prefix, std::string_view bytes) {
  std::u16string out = std::move(prefix);
  std::size_t column = out.size();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    out += HexByte(static_cast<uint8_t>(bytes[i]));
    column += 2;
    if (i + 1 < bytes.size()) {
      out.push_back(u',');
      ++column;
      if (column >= kWrapColumn) {
        out += u"\\\r\n  ";
        column = 2;
      }
    }
  }
  return out;
}

// Whether a REG_SZ can be written as "text": one terminator at the end,
// none inside, no line breaks, and (REGEDIT4) nothing Windows-1252 lacks.
bool PlainText(std::string_view data, RegFormat format, std::u16string& text) {
  if (data.empty() || data.back() != '\0') return false;
  text = FromUtf8(data.substr(0, data.size() - 1));
  for (const char16_t c : text) {
    if (c == u'\0' || c == u'\r' || c == u'\n') return false;
  }
  (void)format;  // characters outside Windows-1252 become '?' either way
  return true;
}

std::u16string ValueLine(const RegFileValue& v, RegFormat format) {
  std::u16string line = v.name.empty() ? u"@" : Quoted(v.name);
  line += u'=';
  if (v.remove) return line + u"-";
  std::u16string text;
  if (v.type == REG_SZ && PlainText(v.data, format, text)) return line + Quoted(text);
  if (v.type == REG_DWORD && v.data.size() == 4) {
    uint32_t d = 0;
    for (int i = 3; i >= 0; --i) d = (d << 8) | static_cast<uint8_t>(v.data[i]);
    std::u16string digits;
    for (int shift = 28; shift >= 0; shift -= 4) digits += HexByte((d >> shift) & 0xF)[1];
    return line + u"dword:" + digits;
  }
  if (v.type == REG_BINARY) return HexLine(line + u"hex:", v.data);
  std::u16string prefix = line + u"hex(";
  static constexpr char16_t kDigits[] = u"0123456789abcdef";
  std::u16string type_digits;
  for (uint32_t t = static_cast<uint32_t>(v.type);;) {
    type_digits.insert(type_digits.begin(), kDigits[t & 0xF]);
    t >>= 4;
    if (t == 0) break;
  }
  return HexLine(prefix + type_digits + u"):", StoredToHexEntry(v.type, v.data, format));
}

}  // namespace

std::string HexEntryToStored(int32_t type, std::string_view bytes, RegFormat format) {
  if (!IsTextType(type)) return std::string(bytes);
  if (format == RegFormat::kRegedit4) return ToUtf8(BytesToText(bytes));
  std::u16string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    text.push_back(static_cast<char16_t>(static_cast<uint8_t>(bytes[i]) |
                                         (static_cast<uint8_t>(bytes[i + 1]) << 8)));
  }
  return ToUtf8(text);
}

std::string StoredToHexEntry(int32_t type, std::string_view data, RegFormat format) {
  if (!IsTextType(type)) return std::string(data);
  const std::u16string text = FromUtf8(data);
  if (format == RegFormat::kRegedit4) return TextToBytesLossy(text);
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t c : text) {
    bytes.push_back(static_cast<char>(c & 0xFF));
    bytes.push_back(static_cast<char>(c >> 8));
  }
  return bytes;
}

std::string WriteRegFile(const RegFile& file, RegFormat format) {
  std::u16string text = format == RegFormat::kRegedit4
                            ? u"REGEDIT4\r\n\r\n"
                            : u"Windows Registry Editor Version 5.00\r\n\r\n";
  for (const RegFileKey& key : file.keys) {
    text += u'[';
    if (key.remove) text += u'-';
    text += RootKeyName(key.root);
    if (!key.path.empty()) text += u"\\" + key.path;
    text += u"]\r\n";
    for (const RegFileValue& v : key.values) text += ValueLine(v, format) + u"\r\n";
    text += u"\r\n";
  }
  if (format == RegFormat::kRegedit4) return TextToBytesLossy(text);
  std::string bytes = "\xFF\xFE";
  bytes.reserve(2 + text.size() * 2);
  for (const char16_t c : text) {
    bytes.push_back(static_cast<char>(c & 0xFF));
    bytes.push_back(static_cast<char>(c >> 8));
  }
  return bytes;
}

}  // namespace norvik50::settings
