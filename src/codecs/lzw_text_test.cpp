// The codec as hosts reach it: text of byte characters through
// tklGlobalVar, on the LIB object and by name through the dispatch.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <optional>
#include <random>
#include <string>

#include "codecs/lzw.h"
#include "codecs/lzw_bomb.h"
#include "codecs/lzw_reference.h"
#include "codecs/lzw_text.h"
#include "core/invoke.h"
#include "core/member_registry.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

// The error number a call raises, or nullopt.
template <typename F>
std::optional<int32_t> ErrorOf(F&& call) {
  try {
    call();
  } catch (const Error& e) {
    return e.number();
  }
  return std::nullopt;
}

TEST(LzwText, CharactersStandForWindows1252Bytes) {
  // "A" compresses to the bytes 83 04 04; 0x83 is the character U+0192.
  EXPECT_EQ(lzw::DeflateText(u"A"), u"\u0192\u0004\u0004");
  EXPECT_EQ(lzw::InflateText(u"\u0192\u0004\u0004"), u"A");
  // Characters of the upper half, including the euro sign (byte 0x80) and
  // the C1 values of the five undefined bytes, round-trip.
  const std::u16string text =
      u"Stra\u00DFe 12 \u20AC 1.234,56 \u201Equoted\u201C \u0081\u008D\u008F\u0090\u009D";
  EXPECT_EQ(lzw::InflateText(lzw::DeflateText(text)), text);
  // The compressed text is the byte stream, character for character.
  EXPECT_EQ(lzw::DeflateText(text), BytesToText(lzw::Deflate(*TextToBytes(text))));
}

TEST(LzwText, SameCodePageAsTheLibrary) {
  // Every byte maps to the character the library's own conversion gives it,
  // so a compressed text read back through BytesToText is the same text.
  std::string all;
  for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
  const std::string stream = lzw::Deflate(all);
  EXPECT_EQ(lzw::DeflateText(BytesToText(all)), BytesToText(stream));
  EXPECT_EQ(lzw::InflateText(BytesToText(stream)), BytesToText(all));
  // Characters the library gives no byte are refused, one by one.
  for (char16_t ch : {u'\u0100', u'\u20AD', u'\u2121', u'\uFFFF'}) {
    ASSERT_FALSE(TextToBytes(std::u16string(1, ch)).has_value());
    EXPECT_THROW((void)lzw::DeflateText(std::u16string(1, ch)), Error);
  }
}

TEST(LzwText, TextIsCompressedAsItsBytes) {
  // Long texts go through many dictionary clears and late entries; the
  // text is read through its characters' bytes in place, so every stream
  // must equal the byte path's, and a refused text must leave nothing
  // behind that changes the next stream.
  std::mt19937 rng(11);
  std::string random(300000, '\0');
  for (char& c : random) c = static_cast<char>(rng() >> 24);
  std::string repetitive;
  while (repetitive.size() < 300000) repetitive += "Rechnung 2024-" + std::to_string(rng() % 97);
  for (const std::string* bytes : {&random, &repetitive}) {
    const std::u16string text = BytesToText(*bytes);
    const std::u16string expected = BytesToText(lzw::Deflate(*bytes));
    EXPECT_EQ(lzw::DeflateText(text), expected);
    for (std::size_t at : {std::size_t{0}, std::size_t{1}, text.size() / 2, text.size() - 1}) {
      std::u16string damaged = text;
      damaged[at] = u'\u0100';
      EXPECT_EQ(ErrorOf([&] { (void)lzw::DeflateText(damaged); }), kErrInvalidCall) << at;
      EXPECT_EQ(lzw::DeflateText(text), expected) << "after a refused text, at " << at;
    }
  }
}

TEST(LzwText, DefinedErrors) {
  const struct {
    const char* what;
    bool deflate;
    std::u16string text;
  } cases[] = {
      // An empty text has no compressed form.
      {"empty to DEFLATE", true, u""},
      // No Windows-1252 byte: refused rather than replaced by "?".
      {"Latin Extended character to DEFLATE", true, u"abc\u0100"},
      {"CJK character to DEFLATE", true, u"\u4E2D"},
      {"lone surrogate to DEFLATE", true, u"\xD800"},
      {"character without a byte to INFLATE", false, u"\u0192\u0004\u0100"},
      // A compressed text naming an entry that does not exist.
      {"damaged compressed text", false,
       BytesToText(lzw::reference::Pack({256, 'a', 300, 257, 0}).substr(1))},
  };
  for (const auto& c : cases) {
    const auto number =
        ErrorOf([&] { (void)(c.deflate ? lzw::DeflateText(c.text) : lzw::InflateText(c.text)); });
    EXPECT_EQ(number, kErrInvalidCall) << c.what;
  }
  // Not compressed at all: the defined empty result, no error.
  EXPECT_EQ(lzw::InflateText(u""), u"");
  EXPECT_EQ(lzw::InflateText(u"plain text"), u"");
}

class GlobalVarTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
};

TEST_F(GlobalVarTest, NamesAreCaseInsensitive) {
  LIB lib;
  const std::u16string compressed = lzw::DeflateText(u"Hello, Hello, Hello");
  for (const char16_t* name : {u"DEFLATE", u"deflate", u"Deflate", u"dEfLaTe"}) {
    EXPECT_EQ(lib.tklGlobalVar(name, Variant(u"Hello, Hello, Hello")).as_string(), compressed);
  }
  for (const char16_t* name : {u"INFLATE", u"inflate"}) {
    EXPECT_EQ(lib.tklGlobalVar(name, Variant(compressed)).as_string(), u"Hello, Hello, Hello");
  }
}

TEST_F(GlobalVarTest, ErrorsAndConversions) {
  LIB lib;
  // Unknown names, near misses included.
  for (const char16_t* name : {u"", u"COMPRESS", u"DEFLATE ", u"INFLAT", u"\u0130NFLATE"}) {
    EXPECT_EQ(ErrorOf([&] { lib.tklGlobalVar(name, Variant(u"x")); }), kErrInvalidCall)
        << ToUtf8(name);
  }
  // A number is compressed as its text.
  EXPECT_EQ(lib.tklGlobalVar(u"DEFLATE", Variant(int16_t{42})).as_string(),
            lzw::DeflateText(u"42"));
  // Empty is the empty text: an error to DEFLATE, "" from INFLATE.
  EXPECT_EQ(ErrorOf([&] { lib.tklGlobalVar(u"DEFLATE", Variant()); }), kErrInvalidCall);
  EXPECT_EQ(lib.tklGlobalVar(u"INFLATE", Variant()).as_string(), u"");
}

TEST_F(GlobalVarTest, ByNameThroughTheDispatchEntry) {
  LIB lib;
  MemberTable table;
  RegisterCodecMembers(table);
  auto call = [&](std::string_view member, std::u16string name, Variant value) {
    return InvokeMember(table, lib, member, {Variant(std::move(name)), std::move(value)}, false);
  };
  const InvokeResult deflated = call("TKLGLOBALVAR", u"deflate", Variant(u"Rechnung Rechnung"));
  ASSERT_TRUE(deflated.result.has_value());
  EXPECT_EQ(deflated.result->as_string(), lzw::DeflateText(u"Rechnung Rechnung"));
  const InvokeResult inflated = call("tklGlobalVar", u"INFLATE", *deflated.result);
  ASSERT_TRUE(inflated.result.has_value());
  EXPECT_EQ(inflated.result->as_string(), u"Rechnung Rechnung");
  // The member's error reaches the caller unchanged.
  EXPECT_EQ(ErrorOf([&] { call("tklGlobalVar", u"NOPE", Variant(u"x")); }), kErrInvalidCall);
}

// Resident memory of this process now, in bytes.
std::size_t ResidentBytes() {
  long pages = 0, resident = 0;
  if (FILE* f = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(f);
  }
  return static_cast<std::size_t>(resident) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST_F(GlobalVarTest, InflatingABombNeedsLittleMoreThanTheText) {
  // 2,060 cycles of the largest expansion: 186 KB of stream, 67 M
  // characters (134 MB of text). The text itself is the floor; a doubling
  // byte buffer and a second copy as text took 2.5 times that. Measured in
  // a child process, whose peak starts at what it has when it is forked.
  const std::u16string stream = BytesToText(lzw::testing::BombStream(2060));
  const std::size_t chars = lzw::testing::BombOutputSize(2060);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const std::size_t before = ResidentBytes();
    LIB lib;
    const Variant text = lib.tklGlobalVar(u"INFLATE", Variant(stream));
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    const std::size_t peak = static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    const std::size_t text_bytes = chars * sizeof(char16_t);
    const bool whole = text.as_string().size() == chars;
    // The text, the stream's bytes and a few pages of bookkeeping.
    _exit(whole && peak - before <= text_bytes + text_bytes / 10 ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0) << "more memory than the text needs, or a wrong text";
}

}  // namespace
}  // namespace norvik50
