// INFLATE on streams that DEFLATE never writes: cut short, damaged, hostile.
// Each gets the defined answer (a text, "" or error 5), the same answer as
// the literal form gives.
#include <gtest/gtest.h>

#include <numeric>
#include <optional>
#include <random>

#include "codecs/lzw.h"
#include "codecs/lzw_bomb.h"
#include "codecs/lzw_reference.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace norvik50::lzw {
namespace {

// The stream of a code list: packed, leading zero byte dropped.
std::string Stream(const std::vector<int>& codes) { return reference::Pack(codes).substr(1); }

std::vector<int> Range(int first, int last) {
  std::vector<int> v(static_cast<std::size_t>(last - first + 1));
  std::iota(v.begin(), v.end(), first);
  return v;
}

std::vector<int> Join(std::initializer_list<std::vector<int>> parts) {
  std::vector<int> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// nullopt stands for error 5.
std::optional<std::string> TryInflate(std::string_view stream) {
  try {
    return Inflate(stream);
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), kErrInvalidCall);
    return std::nullopt;
  }
}

// 1 + 2 + ... + n copies of `c` in a row, as 258..511 each naming the entry
// being defined produce them.
std::string Triangle(char c, int first, int last) {
  std::string s;
  for (int n = first; n <= last; ++n) s.append(static_cast<std::size_t>(n), c);
  return s;
}

TEST(LzwInflate, DefinedAnswers) {
  const struct {
    const char* what;
    std::string stream;
    std::optional<std::string> expected;  // nullopt: error 5
  } cases[] = {
      {"empty stream", "", ""},
      {"first code is not the clear code", std::string("\x00\x83\x04", 3), ""},
      {"only the clear code", Stream({256}), ""},
      {"end code right away", Stream({256, 257, 0}), ""},
      {"cut before the end code", Stream({256, 'h', 'i', 0}), "hi"},
      {"data after the end code is ignored", Stream({256, 'x', 257, 'y', 'z', 0}), "x"},
      {"first data code is the clear code", Stream({256, 256, 'a', 257}), std::nullopt},
      {"first data code is a learnt code", Stream({256, 300, 257}), std::nullopt},
      {"code beyond the one being defined", Stream({256, 'a', 259, 257}), std::nullopt},
      {"code far beyond after a clear", Stream({256, 'a', 'b', 256, 260, 257}), std::nullopt},
      // 258 is being defined: the previous string plus its own first byte.
      {"code being defined", Stream({256, 'a', 258, 257, 0}), "aaa"},
      // After a clear the previous string still counts: 258 is "ab" + "a".
      {"clear keeps the previous string", Stream({256, 'a', 'b', 258, 256, 258, 257}),
       "abababa"},  // a, b, ab, aba
      // 0..255 learn 255 strings; the decoder clears itself at the same fill
      // level as the compressor, so 258 is [254, 255] without a clear code.
      {"decoder clears itself when full", Stream(Join({{256}, Range(0, 255), {258, 257}})),
       [] {
         std::string s;
         for (int i = 0; i < 256; ++i) s.push_back(static_cast<char>(i));
         return s + "\xFE\xFF";
       }()},
      // Strings up to 256 bytes are what compressed texts can hold...
      {"longest string", Stream(Join({{256, 'a'}, Range(258, 511), {256, 258, 257}})),
       "a" + Triangle('a', 2, 256)},
      // ... and a stream that goes on growing them across clears is refused.
      {"string longer than any compressed text holds",
       Stream(Join({{256, 'a'}, Range(258, 511), {256, 258, 259, 257}})), std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TryInflate(c.stream), c.expected) << c.what;
    EXPECT_EQ(reference::Decompress(c.stream), c.expected) << c.what << " (literal form)";
  }
}

TEST(LzwInflate, StreamCutShortGivesAPrefix) {
  // Every cut of a stream decodes to a prefix of the text: the whole codes
  // before the cut, nothing invented.
  std::string text;
  for (int i = 0; i < 300; ++i) text += "Pos " + std::to_string(i) + ": 12,50 EUR\r\n";
  const std::string stream = Deflate(text);
  for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
    const std::string got = Inflate(stream.substr(0, cut));
    ASSERT_EQ(got, text.substr(0, got.size())) << "cut at " << cut;
    if (cut + 2 < stream.size()) {
      // Cut before the end code, so the missing codes are missing text.
      EXPECT_LT(got.size(), text.size()) << "cut at " << cut;
    }
  }
}

TEST(LzwInflate, GarbageGetsTheLiteralFormsAnswer) {
  // Random bytes (mostly starting with the clear code's bit) and valid
  // streams with bits flipped, against the literal form: same text, or
  // error 5 from both.
  std::mt19937 rng(2024);
  int errors = 0, texts = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string stream;
    if (i % 2 == 0) {
      stream.resize(rng() % 600);
      for (char& c : stream) c = static_cast<char>(rng());
      if (!stream.empty() && i % 10 != 0) stream[0] |= 1;
    } else {
      std::string text(1 + rng() % 3000, '\0');
      for (char& c : text) c = "abcde"[rng() % 5];
      stream = Deflate(text);
      for (int flips = 1 + static_cast<int>(rng() % 3); flips > 0; --flips) {
        stream[rng() % stream.size()] ^= static_cast<char>(1u << (rng() % 8));
      }
    }
    const std::optional<std::string> got = TryInflate(stream);
    ASSERT_EQ(got, reference::Decompress(stream)) << "case " << i;
    (got ? texts : errors) += 1;
    if (got) {
      // Never more than the longest string per code.
      ASSERT_LE(got->size(), (stream.size() + 1) * 8 / 9 * kMaxStringLength);
    }
  }
  // Both kinds of answer were met.
  EXPECT_GT(errors, 100);
  EXPECT_GT(texts, 100);
}

TEST(LzwInflate, TheLargestExpansionDecodesExactly) {
  // Each cycle reaches the longest string allowed and no further, so the
  // bomb is a valid stream: it decodes in full, to the size worked out
  // from its codes, and the literal form agrees.
  for (std::size_t cycles : {1u, 2u, 3u, 40u}) {
    const std::string stream = testing::BombStream(cycles);
    const std::string text = Inflate(stream);
    ASSERT_EQ(text.size(), testing::BombOutputSize(cycles)) << cycles;
    EXPECT_EQ(text.find_first_not_of('a'), std::string::npos);
    EXPECT_GT(text.size(), 100 * stream.size()) << cycles;
    if (cycles <= 3) {
      EXPECT_EQ(reference::Decompress(stream), text);
    }
    EXPECT_EQ(InflateToText(stream), std::u16string(text.size(), u'a'));
  }
}

TEST(LzwInflate, TextFormGivesTheWindows1252CharacterOfEachByte) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(i));
  bytes += bytes;  // learnt strings too, not only byte codes
  const std::u16string text = InflateToText(Deflate(bytes));
  ASSERT_EQ(text.size(), bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    ASSERT_EQ(text[i], Cp1252ToChar(static_cast<uint8_t>(bytes[i]))) << i;
  }
  // A damaged stream is refused the same way in both forms.
  EXPECT_THROW((void)InflateToText(Stream({256, 'a', 300, 257})), Error);
}

}  // namespace
}  // namespace norvik50::lzw
