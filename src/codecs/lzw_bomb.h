// Test support: the stream that expands the most, as a hostile sender would
// make it. After the one-byte first code, every code names the entry being
// defined (the previous string plus its own first byte), so each decodes to
// one byte more than the one before, up to the longest string the format
// allows; a clear code then starts the next cycle. About 113 bytes of
// output per byte of stream: 10 MB of stream are 1.1 GB of text.
#ifndef NORVIK50_SRC_CODECS_LZW_BOMB_H_
#define NORVIK50_SRC_CODECS_LZW_BOMB_H_

#include <cstddef>
#include <string>
#include <vector>

#include "codecs/lzw.h"
#include "codecs/lzw_reference.h"

namespace norvik50::lzw::testing {

// The codes of `cycles` cycles, from the leading clear code to the end code
// and the padding code.
inline std::vector<int> BombCodes(std::size_t cycles) {
  std::vector<int> codes{kClearCode, 'a'};
  for (int code = kFirstLearnt; code < kDictionarySize; ++code) codes.push_back(code);
  for (std::size_t c = 1; c < cycles; ++c) {
    // After the clear, 'a' teaches 258 (the last long string plus "a"); the
    // run starts over at 259 with "aa".
    codes.push_back(kClearCode);
    codes.push_back('a');
    for (int code = kFirstLearnt + 1; code < kDictionarySize; ++code) codes.push_back(code);
  }
  codes.push_back(kEndCode);
  codes.push_back(0);
  return codes;
}

// The stream as stored (the packed codes without their leading zero byte).
inline std::string BombStream(std::size_t cycles) {
  return reference::Pack(BombCodes(cycles)).substr(1);
}

// How many bytes ("a", all of them) the stream decodes to.
inline std::size_t BombOutputSize(std::size_t cycles) {
  auto run = [](std::size_t from, std::size_t to) { return (from + to) * (to - from + 1) / 2; };
  // The first cycle: "a", then 2..255 bytes; each later one: "a", then 2..254.
  return 1 + run(2, 255) + (cycles - 1) * (1 + run(2, 254));
}

}  // namespace norvik50::lzw::testing

#endif  // NORVIK50_SRC_CODECS_LZW_BOMB_H_
