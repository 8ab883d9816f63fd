// libFuzzer target for the LZW codec. Every input is used twice:
//  - as a text: DEFLATE then INFLATE must give it back;
//  - as a stream: INFLATE must answer with a text or error 5, never crash,
//    read outside the input or run away; the answer is checked against the
//    bound on a stream's expansion, the text form must be the same answer
//    character for character, and any text it gives must compress and
//    decompress again.
// Seeds in fuzz/corpus/lzw: a stream of the largest expansion (every code
// the entry being defined, up to the longest string), a text stream that
// fills the dictionary, and one cut short.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "codecs/lzw.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  namespace lzw = norvik50::lzw;
  const std::string_view input(reinterpret_cast<const char*>(data), size);

  if (!input.empty()) {
    const std::string stream = lzw::Deflate(input);
    Check(lzw::Inflate(stream) == input);
  }

  std::optional<std::string> bytes;
  try {
    bytes = lzw::Inflate(input);
    const std::string& text = *bytes;
    Check(text.size() <= (size + 1) * 8 / 9 * lzw::kMaxStringLength);
    if (!text.empty()) Check(lzw::Inflate(lzw::Deflate(text)) == text);
  } catch (const norvik50::Error& e) {
    Check(e.number() == norvik50::kErrInvalidCall);
  }
  try {
    const std::u16string text = lzw::InflateToText(input);
    Check(bytes && text == norvik50::BytesToText(*bytes));
  } catch (const norvik50::Error& e) {
    Check(!bytes && e.number() == norvik50::kErrInvalidCall);
  }
  return 0;
}
