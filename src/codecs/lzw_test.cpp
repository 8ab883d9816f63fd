// The fast codec against the literal form, on many random inputs with fixed
// seeds, and the round trips and properties every compressed text has.
#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "codecs/lzw.h"
#include "codecs/lzw_reference.h"
#include "norvik50/error.h"

namespace norvik50::lzw {
namespace {

// `length` bytes drawn from `alphabet` with the given seed.
std::string RandomText(uint32_t seed, std::size_t length, std::string_view alphabet) {
  std::mt19937 rng(seed);
  std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
  std::string s(length, '\0');
  for (char& c : s) c = alphabet[pick(rng)];
  return s;
}

std::string AllBytes() {
  std::string s;
  for (int i = 0; i < 256; ++i) s.push_back(static_cast<char>(i));
  return s;
}

// How often the compressor cleared the dictionary for `text`.
int ClearCount(std::string_view text) {
  const std::vector<int> codes = reference::CompressToCodes(text);
  return static_cast<int>(std::count(codes.begin() + 1, codes.end(), 256));
}

struct Group {
  const char* name;
  uint32_t seed;
  int inputs;
  std::size_t max_length;
  std::string alphabet;
};

TEST(Lzw, DeflateMatchesLiteralForm) {
  const Group groups[] = {
      // One letter: the longest strings the dictionary can hold.
      {"one letter", 1, 20, 70000, "a"},
      // Two and three letters: long strings, and after a clear the prefix of
      // entry 258 is learnt again, so 258 comes back into use.
      {"two letters", 2, 60, 30000, "ab"},
      {"three letters", 3, 40, 30000, "xyz"},
      // Text-like: short strings, frequent clears.
      {"words", 4, 40, 20000, "ETAOIN SHRDLU etaoin shrdlu 0123456789;.,\r\n"},
      // Every byte, zero and high bytes included: the stream grows.
      {"all bytes", 5, 30, 12000, AllBytes()},
      // Short inputs of every kind.
      {"short", 6, 400, 40, "abc\0\xFF"},
  };
  for (const Group& g : groups) {
    std::mt19937 lengths(g.seed);
    for (int i = 0; i < g.inputs; ++i) {
      const std::size_t length = 1 + lengths() % g.max_length;
      const std::string text = RandomText(g.seed * 1000 + i, length, g.alphabet);
      ASSERT_EQ(Deflate(text), reference::Compress(text))
          << g.name << " #" << i << ", " << length << " bytes";
    }
  }
}

TEST(Lzw, LiteralFormGroupsFillTheDictionaryManyTimes) {
  // The comparison above only means something if the inputs clear the
  // dictionary over and over; make sure the long ones do.
  EXPECT_GE(ClearCount(RandomText(42, 30000, "ab")), 10);
  EXPECT_GE(ClearCount(RandomText(43, 20000, "ETAOIN SHRDLU etaoin")), 30);
  EXPECT_GE(ClearCount(RandomText(44, 12000, AllBytes())), 40);
}

TEST(Lzw, InflateInvertsDeflateForEveryLength) {
  // Every length from 1 to 5000, over two letters and over all bytes.
  const std::string alphabets[] = {"ab", AllBytes()};
  for (const std::string& alphabet : alphabets) {
    for (std::size_t length = 1; length <= 5000; ++length) {
      const std::string text = RandomText(static_cast<uint32_t>(length), length, alphabet);
      ASSERT_EQ(Inflate(Deflate(text)), text)
          << length << " bytes over " << alphabet.size() << " letters";
    }
  }
}

TEST(Lzw, InflateInvertsDeflateOnLongInputs) {
  // Many clears, long runs and the literal form's own decoder agreeing.
  const std::string texts[] = {
      std::string(300000, 'q'),
      RandomText(7, 200000, "ab"),
      RandomText(8, 200000, AllBytes()),
      RandomText(9, 200000, "Rechnung 2024-03-05 EUR 1.234,56;\r\n"),
  };
  for (const std::string& text : texts) {
    const std::string stream = Deflate(text);
    EXPECT_EQ(Inflate(stream), text);
  }
  const std::string medium = RandomText(10, 20000, "abc");
  EXPECT_EQ(reference::Decompress(Deflate(medium)), medium);
}

TEST(Lzw, OneCharacterGivesThree) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(Deflate(text).size(), 3u) << byte;
    EXPECT_EQ(Inflate(Deflate(text)), text) << byte;
  }
}

TEST(Lzw, SameTextTwiceGivesSameStream) {
  // The dictionary is rebuilt for every call, whatever came before on the
  // same thread.
  const std::string text = RandomText(11, 5000, "abcd");
  const std::string first = Deflate(text);
  (void)Deflate(RandomText(12, 70000, AllBytes()));
  (void)Deflate(std::string(1000, 'a'));
  EXPECT_EQ(Deflate(text), first);
}

TEST(Lzw, ThreadsCompressIndependently) {
  const std::string a = RandomText(13, 50000, "ab");
  const std::string b = RandomText(14, 50000, AllBytes());
  const std::string expected_a = reference::Compress(a);
  const std::string expected_b = Deflate(b);
  std::string got_a[20], got_b[20];
  std::thread ta([&] { for (auto& s : got_a) s = Deflate(a); });
  std::thread tb([&] { for (auto& s : got_b) s = Deflate(b); });
  ta.join();
  tb.join();
  for (const auto& s : got_a) EXPECT_EQ(s, expected_a);
  for (const auto& s : got_b) EXPECT_EQ(s, expected_b);
}

TEST(Lzw, IncompressibleTextNeedsMoreCodesThanItsLength) {
  // There is no cap on the code list: random bytes need one code per byte
  // plus a clear every 254 learnt strings, more than the length plus 3.
  const std::string text = RandomText(15, 10000, AllBytes());
  const std::size_t codes = reference::CompressToCodes(text).size();
  EXPECT_GT(codes, text.size() + 3 + 1);
  const std::string stream = Deflate(text);
  EXPECT_EQ(stream.size(), codes * 9 / 8 - 1);
  EXPECT_EQ(Inflate(stream), text);
}

TEST(Lzw, EmptyTextHasNoCompressedForm) {
  try {
    (void)Deflate("");
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), kErrInvalidCall);
  }
}

}  // namespace
}  // namespace norvik50::lzw
