// Byte-exact fixtures in testdata/lzw: each input beside its compressed
// form. Compressed texts are stored by hosts, so the stream format must never
// drift; these files hold it still.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "codecs/lzw.h"
#include "codecs/lzw_reference.h"

namespace norvik50::lzw {
namespace {

std::string ReadFixture(const std::string& name) {
  const char* root = std::getenv("NORVIK50_TESTDATA");
  if (root == nullptr) {
    ADD_FAILURE() << "NORVIK50_TESTDATA is not set (CTest sets it to <repo>/testdata)";
    return {};
  }
  std::ifstream in(std::string(root) + "/lzw/" + name, std::ios::binary);
  if (!in) {
    ADD_FAILURE() << "missing fixture " << name;
    return {};
  }
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

int ClearCodesAfterTheFirst(std::string_view stream) {
  const std::vector<int> codes = reference::Unpack(std::string(1, '\0') + std::string(stream));
  if (codes.empty()) return -1;
  return static_cast<int>(std::count(codes.begin() + 1, codes.end(), 256));
}

// Whether, after some clear, code 258 is used while it holds a string of 3 or
// more bytes: the entry learnt from the old w right after the clear. Tracks
// only the string lengths, as the decoder would learn them.
bool UsesEntryLearntAtAClear(std::string_view stream) {
  const std::vector<int> codes = reference::Unpack(std::string(1, '\0') + std::string(stream));
  std::vector<std::size_t> length(512, 1);
  std::size_t prev = 1;
  int next = 258;
  bool cleared = false;
  for (std::size_t k = 2; k < codes.size() && codes[k] != 257; ++k) {
    const int code = codes[k];
    if (code == 256) {
      next = 258;
      cleared = true;
      continue;
    }
    const std::size_t current = code == next ? prev + 1 : length[code];
    if (cleared && code == 258 && length[258] >= 3 && next > 258) return true;
    length[next++] = prev + 1;
    prev = current;
  }
  return false;
}

struct Fixture {
  const char* input;
  const char* compressed;
  int clears;  // clear codes after the leading one
};

const Fixture kFixtures[] = {
    // "A": 83 04 04.
    {"one_char.txt", "one_char.lzw", 0},
    // The classic example; its codes are worked out in lzw_reference_test.
    {"tobeornot.txt", "tobeornot.lzw", 0},
    // Bytes 0..255, FE FF 01: the overflow and entry 258 found again at once.
    {"all_bytes.bin", "all_bytes.lzw", 1},
    // 150 invoice lines in Windows-1252 (with a u-umlaut byte): 25 clears.
    {"invoice_clears.txt", "invoice_clears.lzw", 25},
    // 40000 times "a": strings of up to 255 bytes.
    {"run_of_a.txt", "run_of_a.lzw", 1},
    // Two letters where, after a clear, entry 258 (the old w of several
    // bytes plus one) is reached again once its prefix has been relearnt.
    {"late_entry.txt", "late_entry.lzw", 2},
    // Random bytes, zero bytes included: longer than the input.
    {"random_bytes.bin", "random_bytes.lzw", 11},
};

TEST(LzwFixtures, DeflateWritesTheStoredStream) {
  for (const Fixture& f : kFixtures) {
    const std::string input = ReadFixture(f.input);
    const std::string compressed = ReadFixture(f.compressed);
    ASSERT_FALSE(input.empty()) << f.input;
    EXPECT_EQ(Deflate(input), compressed) << f.input;
    EXPECT_EQ(reference::Compress(input), compressed) << f.input << " (literal form)";
  }
}

TEST(LzwFixtures, InflateReadsTheStoredStream) {
  for (const Fixture& f : kFixtures) {
    const std::string input = ReadFixture(f.input);
    EXPECT_EQ(Inflate(ReadFixture(f.compressed)), input) << f.compressed;
  }
}

TEST(LzwFixtures, ClearCodesWhereExpected) {
  for (const Fixture& f : kFixtures) {
    EXPECT_EQ(ClearCodesAfterTheFirst(ReadFixture(f.compressed)), f.clears) << f.compressed;
  }
  EXPECT_TRUE(UsesEntryLearntAtAClear(ReadFixture("late_entry.lzw")));
  EXPECT_FALSE(UsesEntryLearntAtAClear(ReadFixture("all_bytes.lzw")));  // only 2 bytes
  // The tiny ones, by hand.
  EXPECT_EQ(ReadFixture("one_char.lzw"), "\x83\x04\x04");
  EXPECT_EQ(ReadFixture("tobeornot.lzw").substr(0, 2), "\xA9\x3C");
}

}  // namespace
}  // namespace norvik50::lzw
