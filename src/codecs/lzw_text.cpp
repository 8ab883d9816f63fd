#include "codecs/lzw_text.h"

#include <array>
#include <memory>

#include "codecs/lzw.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace norvik50::lzw {
namespace {

// The code page as two lookup tables, built once from the library's own
// Cp1252ToChar so that the mapping is the same as everywhere else. The
// compressed texts are close to random bytes, a quarter of them in the range
// whose characters lie outside Latin-1; a table keeps the conversion of
// those as cheap as that of plain letters.
struct CodePage {
  std::array<char16_t, 256> to_char{};
  // to_byte[ch] is the byte of character ch plus 1, or 0 when it has none.
  std::unique_ptr<uint16_t[]> to_byte{new uint16_t[0x10000]()};

  CodePage() {
    for (int b = 0; b < 256; ++b) {
      const char16_t ch = Cp1252ToChar(static_cast<uint8_t>(b));
      to_char[b] = ch;
      to_byte[ch] = static_cast<uint16_t>(b + 1);
    }
  }
};

const CodePage& Table() {
  static const CodePage table;
  return table;
}

// The bytes the characters stand for. A character outside the code page has
// no byte, and silently replacing it (as a best-fit conversion would) would
// make INFLATE return a different text than was compressed.
std::string ToBytes(std::u16string_view text, const char16_t* what) {
  const uint16_t* to_byte = Table().to_byte.get();
  std::string bytes(text.size(), '\0');
  uint32_t missing = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const uint32_t b = to_byte[text[i]];
    missing |= b == 0;
    bytes[i] = static_cast<char>(b - 1);
  }
  if (missing != 0) {
    throw Error(kErrInvalidCall,
                std::u16string(what) +
                    u" contains a character that is not a byte character "
                    u"(it has no Windows-1252 code)",
                std::u16string(kErrorSource));
  }
  return bytes;
}

std::u16string ToText(std::string_view bytes) {
  const CodePage& table = Table();
  std::u16string text(bytes.size(), u'\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    text[i] = table.to_char[static_cast<unsigned char>(bytes[i])];
  }
  return text;
}

}  // namespace

std::u16string DeflateText(std::u16string_view text) {
  return ToText(Deflate(ToBytes(text, u"The text to DEFLATE")));
}

std::u16string InflateText(std::u16string_view text) {
  return ToText(Inflate(ToBytes(text, u"The text to INFLATE")));
}

}  // namespace norvik50::lzw
