// The literal form of the codec against results worked out by hand. The
// fast codec is tested against this form, so it must be right on its own.
#include <gtest/gtest.h>

#include <numeric>

#include "codecs/lzw_reference.h"

namespace norvik50::lzw {
namespace {

std::vector<int> Codes(std::initializer_list<std::vector<int>> parts) {
  std::vector<int> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

std::vector<int> Range(int first, int last) {
  std::vector<int> v(static_cast<std::size_t>(last - first + 1));
  std::iota(v.begin(), v.end(), first);
  return v;
}

std::string Text(const std::vector<int>& bytes) {
  std::string s;
  for (int b : bytes) s.push_back(static_cast<char>(b));
  return s;
}

TEST(LzwReference, CodeLists) {
  const struct {
    std::string text;
    std::vector<int> codes;
  } cases[] = {
      // One character: clear, its code, end, padding.
      {"A", {256, 65, 257, 0}},
      // The second "a" is not learnt yet when it is read.
      {"aa", {256, 97, 97, 257, 0}},
      // "aa" (258) is found on the third character.
      {"aaa", {256, 97, 258, 257, 0}},
      // The classic example, with learnt codes starting at 258.
      {"TOBEORNOTTOBEORTOBEORNOT",
       {256, 'T', 'O', 'B', 'E', 'O', 'R', 'N', 'O', 'T', 258, 260, 262, 267,
        261, 263, 265, 257, 0}},
      // 0..255: the 255th string learnt ([254,255]) overflows the dictionary,
      // so the clear code follows the code of 254.
      {Text(Range(0, 255)), Codes({{256}, Range(0, 254), {256, 255, 257, 0}})},
      // ... and the string that failed becomes 258 of the fresh dictionary:
      // [254,255] is found again at once, [255,254] was learnt as 259.
      {Text(Codes({Range(0, 255), {254, 255, 1}})),
       Codes({{256}, Range(0, 254), {256, 255, 258, 1, 257, 0}})},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(reference::CompressToCodes(c.text), c.codes) << c.text.size();
  }
}

TEST(LzwReference, PackedBytes) {
  // 256, 65, 257, 0 as 9-bit groups, least significant bit first:
  // 00000000 1|1000001 00|100000 000|1 0000... -> 00 83 04 04 (4 bits cut).
  EXPECT_EQ(reference::Pack({256, 65, 257, 0}), std::string("\x00\x83\x04\x04", 4));
  // The leading zero byte is dropped: one character gives three.
  EXPECT_EQ(reference::Compress("A"), "\x83\x04\x04");
  // 256, 'T' (84), 'O' (79): 00 | 1 + 0010101 | 00 + 111100 ...
  EXPECT_EQ(reference::Compress("TOBEORNOTTOBEORTOBEORNOT").substr(0, 2), "\xA9\x3C");
  // Unpack reads whole 9-bit codes only.
  EXPECT_EQ(reference::Unpack(std::string("\x00\x83\x04\x04", 4)),
            (std::vector<int>{256, 65, 257}));
}

TEST(LzwReference, DecompressInvertsCompress) {
  for (const std::string text :
       {"A", "aa", "aaa", "TOBEORNOTTOBEORTOBEORNOT", "abababababababababab"}) {
    EXPECT_EQ(reference::Decompress(reference::Compress(text)), text);
  }
  // Across a clear: entry 258 is learnt from the string of the code before
  // the clear (254) and the first byte of the code after it (255).
  const std::string overflow = Text(Codes({Range(0, 255), {254, 255, 1}}));
  EXPECT_EQ(reference::Decompress(reference::Compress(overflow)), overflow);
}

}  // namespace
}  // namespace norvik50::lzw
