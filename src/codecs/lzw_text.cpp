#include "codecs/lzw_text.h"

#include <optional>
#include <string>

#include "codecs/lzw.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace norvik50::lzw {
namespace {

// The bytes the characters stand for. A character outside the code page has
// no byte, and silently replacing it (as a best-fit conversion would) would
// make INFLATE return a different text than was compressed.
Error NotByteCharacters(const char16_t* what) {
  return Error(kErrInvalidCall,
               std::u16string(what) +
                   u" contains a character that is not a byte character "
                   u"(it has no Windows-1252 code)",
               std::u16string(kErrorSource));
}

std::string ToBytes(std::u16string_view text, const char16_t* what) {
  std::optional<std::string> bytes = TextToBytes(text);
  if (!bytes) throw NotByteCharacters(what);
  return std::move(*bytes);
}

}  // namespace

std::u16string DeflateText(std::u16string_view text) {
  std::optional<std::u16string> stream = DeflateCharacters(text);
  if (!stream) throw NotByteCharacters(u"The text to DEFLATE");
  return std::move(*stream);
}

std::u16string InflateText(std::u16string_view text) {
  return InflateToText(ToBytes(text, u"The text to INFLATE"));
}

}  // namespace norvik50::lzw
