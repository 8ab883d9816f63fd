#include "norvik50/encoding.h"

#include <array>
#include <memory>

namespace norvik50 {
namespace {

// Characters of bytes 0x80..0x9F; the rest of Windows-1252 equals Latin-1.
// The five bytes the code page leaves undefined keep their C1 value, as the
// system's own conversion does, so every byte survives a round trip.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char16_t kReplacement = 0xFFFD;

// Character -> byte + 1 (0: no byte), for every UTF-16 unit. Texts of byte
// characters (compressed streams, binary values) are full of the 0x80..0x9F
// characters, so each must cost one lookup, not a search. Built by the
// compiler, so it costs neither a heap block nor a first-use check.
constexpr std::array<uint16_t, 0x10000> kByteOfChar = [] {
  std::array<uint16_t, 0x10000> t{};
  for (int b = 0; b < 256; ++b) {
    const char16_t ch = b >= 0x80 && b <= 0x9F ? kHighControls[b - 0x80] : char16_t(b);
    t[ch] = static_cast<uint16_t>(b + 1);
  }
  return t;
}();

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

void AppendUtf16(std::u16string& out, char32_t cp) {
  if (cp < 0x10000) {
    out.push_back(static_cast<char16_t>(cp));
  } else {
    cp -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
  }
}

}  // namespace

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() &&
        text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
      ++i;
    } else if (c >= 0xD800 && c <= 0xDFFF) {
      c = kReplacement;
    }
    AppendUtf8(out, c);
  }
  return out;
}

std::u16string FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    const auto b0 = static_cast<unsigned char>(text[i]);
    if (b0 < 0x80) {
      out.push_back(b0);
      ++i;
      continue;
    }
    int extra = 0;
    char32_t cp = 0;
    char32_t min = 0;
    if ((b0 & 0xE0) == 0xC0) {
      extra = 1; cp = b0 & 0x1F; min = 0x80;
    } else if ((b0 & 0xF0) == 0xE0) {
      extra = 2; cp = b0 & 0x0F; min = 0x800;
    } else if ((b0 & 0xF8) == 0xF0) {
      extra = 3; cp = b0 & 0x07; min = 0x10000;
    } else {
      out.push_back(kReplacement);
      ++i;
      continue;
    }
    std::size_t j = i + 1;
    bool ok = true;
    for (int k = 0; k < extra; ++k, ++j) {
      if (j >= text.size() || (static_cast<unsigned char>(text[j]) & 0xC0) != 0x80) {
        ok = false;
        break;
      }
      cp = (cp << 6) | (static_cast<unsigned char>(text[j]) & 0x3F);
    }
    if (!ok || cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
      // Resynchronise on the next byte that may start a sequence.
      // j stops at the byte that broke the sequence, so decoding
      // resynchronises there.
      out.push_back(kReplacement);
      i = j;
      continue;
    }
    AppendUtf16(out, cp);
    i = j;
  }
  return out;
}

char16_t Cp1252ToChar(uint8_t byte) noexcept {
  if (byte >= 0x80 && byte <= 0x9F) return kHighControls[byte - 0x80];
  return byte;
}

std::optional<uint8_t> CharToCp1252(char16_t ch) noexcept {
  const uint16_t b = kByteOfChar[ch];
  if (b == 0) return std::nullopt;
  return static_cast<uint8_t>(b - 1);
}

std::u16string BytesToText(std::string_view bytes) {
  static const std::array<char16_t, 256> char_of = [] {
    std::array<char16_t, 256> t{};
    for (int b = 0; b < 256; ++b) t[b] = Cp1252ToChar(static_cast<uint8_t>(b));
    return t;
  }();
  std::u16string out(bytes.size(), u'\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    out[i] = char_of[static_cast<uint8_t>(bytes[i])];
  }
  return out;
}

std::optional<std::string> TextToBytes(std::u16string_view text) {
  const uint16_t* byte_of = kByteOfChar.data();
  std::string out(text.size(), '\0');
  uint32_t missing = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const uint32_t b = byte_of[text[i]];
    missing |= static_cast<uint32_t>(b == 0);  // checked once, after the loop
    out[i] = static_cast<char>(b - 1);
  }
  if (missing != 0) return std::nullopt;
  return out;
}

std::string TextToBytesLossy(std::u16string_view text) {
  std::string out(text.size(), '\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    out[i] = static_cast<char>(CharToCp1252(text[i]).value_or('?'));
  }
  return out;
}

}  // namespace norvik50
