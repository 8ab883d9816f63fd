#include "numeric/radix.h"

#include <cmath>
#include <exception>

#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "numeric/convert_to_type.h"

namespace norvik50 {
namespace {

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

uint8_t ByteOf(char16_t c) { return CharToCp1252(c).value_or(static_cast<uint8_t>('?')); }

// A Double rounded half to even to a Long, or overflow (6).
int32_t RoundToLong(double value) {
  const double r = std::nearbyint(value);
  if (!(r >= -2147483648.0 && r <= 2147483647.0)) Raise(kErrOverflow);
  return static_cast<int32_t>(r);
}

}  // namespace

std::optional<int32_t> ParseHexPrefix(std::u16string_view text) {
  uint32_t value = 0;
  int significant = 0;
  for (char16_t c : text) {
    const int digit = HexDigit(c);
    if (digit < 0) break;
    if (significant > 0 || digit != 0) {
      if (++significant > 8) return std::nullopt;
    }
    value = (value << 4) | static_cast<uint32_t>(digit);
  }
  return static_cast<int32_t>(value);
}

std::u16string HexOf(int32_t value) {
  static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  uint32_t v = static_cast<uint32_t>(value);
  char16_t buffer[8];
  int n = 0;
  do {
    buffer[n++] = kDigits[v & 0xF];
    v >>= 4;
  } while (v != 0);
  std::u16string out;
  while (n > 0) out.push_back(buffer[--n]);
  return out;
}

int32_t HexTextToLong(const Variant& value) {
  try {
    std::u16string hex;
    if (value.is_string()) {
      const std::u16string& text = value.as_string();
      if (!text.empty() && (text[0] == u'x' || text[0] == u'X')) {
        // Raw bytes, least significant first: the last character is the
        // most significant byte, so the digit pairs are written from it back.
        for (std::size_t i = text.size(); i-- > 1;) {
          static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
          const uint8_t byte = ByteOf(text[i]);
          hex.push_back(kDigits[byte >> 4]);
          hex.push_back(kDigits[byte & 0xF]);
        }
      } else {
        hex = text;
      }
    } else {
      // Numbers take the 32-bit form even when they are 16-bit Integers, so
      // -1 stays -1 (not the Integer form FFFF, which would read as 65535).
      const Variant as_long = ConvertStrict(3, value);
      hex = HexOf(as_long.as_long());
    }
    return ParseHexPrefix(hex).value_or(0);
  } catch (const std::exception&) {
    return 0;
  }
}

double Hex2Dbl(std::u16string_view value) {
  std::u16string text;
  for (char16_t c : value) {
    // Case-sensitive on purpose: "&hFF" keeps its "h", which ends the digits.
    if (c != u'&' && c != u'H') text.push_back(c);
  }
  std::u16string_view high, low = text;
  if (text.size() > 6) {
    high = std::u16string_view(text).substr(0, text.size() - 6);
    low = std::u16string_view(text).substr(text.size() - 6);
  }
  const std::optional<int32_t> high_value = ParseHexPrefix(high);
  if (!high_value) Raise(kErrOverflow);
  const int32_t low_value = ParseHexPrefix(low).value_or(0);  // six digits always fit
  return static_cast<double>(*high_value) * 16777216.0 + low_value;
}

std::u16string Dbl2Hex(double value, int16_t min_length) {
  const double high = std::floor(value / 16777216.0);
  const double low = value - high * 16777216.0;
  std::u16string out;
  if (high > 0) {
    out = HexOf(RoundToLong(high));
    std::u16string low_text = HexOf(RoundToLong(low));
    // Padded to six digits but never cut: a low part that rounds up to
    // 16777216 keeps its seventh digit.
    if (low_text.size() < 6) low_text.insert(0, 6 - low_text.size(), u'0');
    out += low_text;
  } else {
    // The high part's form is never taken here, so a very negative value
    // does not overflow; only its low 24 bits remain, by design.
    out = HexOf(RoundToLong(low));
  }
  if (static_cast<int>(out.size()) < min_length) {
    out.insert(0, static_cast<std::size_t>(min_length) - out.size(), u'0');
  }
  return out;
}

std::u16string Lng2Str(int32_t value) {
  const int64_t v = value;
  const int64_t b1 = (v >= 0 ? v : v - 16777215) / 16777216;  // floor division
  if (b1 < 0) Raise(kErrInvalidCall);                         // a negative byte has no character
  const int64_t r1 = v - b1 * 16777216;
  const int64_t b2 = r1 / 65536, r2 = r1 - b2 * 65536;
  const int64_t b3 = r2 / 256, b4 = r2 - b3 * 256;
  std::u16string out;
  for (int64_t b : {b1, b2, b3, b4}) out.push_back(Cp1252ToChar(static_cast<uint8_t>(b)));
  return out;
}

int32_t Str2Lng(std::u16string_view source) {
  static constexpr int64_t kWeights[] = {16777216, 65536, 256, 1};
  int64_t sum = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    if (i >= source.size()) Raise(kErrInvalidCall);
    const int64_t term = int64_t{ByteOf(source[i])} * kWeights[i];
    // Long arithmetic: the first product alone overflows from byte 128 on,
    // before a missing later character is noticed.
    sum = ToInt32Checked(term) + sum;
    sum = ToInt32Checked(sum);
  }
  return static_cast<int32_t>(sum);
}

}  // namespace norvik50
