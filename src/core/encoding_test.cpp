#include "norvik50/encoding.h"

#include <gtest/gtest.h>

namespace norvik50 {
namespace {

TEST(EncodingTest, EveryByteRoundTripsThroughWindows1252) {
  std::string all;
  for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
  const std::u16string text = BytesToText(all);
  ASSERT_EQ(text.size(), 256u);
  EXPECT_EQ(TextToBytes(text), all);
}

TEST(EncodingTest, HighControlRange) {
  EXPECT_EQ(Cp1252ToChar(0x80), u'\u20AC');  // euro sign
  EXPECT_EQ(Cp1252ToChar(0x9F), u'\u0178');
  // The undefined bytes keep their C1 characters.
  for (uint8_t b : {0x81, 0x8D, 0x8F, 0x90, 0x9D}) EXPECT_EQ(Cp1252ToChar(b), b);
  EXPECT_EQ(CharToCp1252(u'\u20AC'), 0x80);
  EXPECT_EQ(CharToCp1252(u'\u00FC'), 0xFC);
  // C1 characters the code page maps elsewhere have no byte.
  EXPECT_FALSE(CharToCp1252(u'\u0080'));
  EXPECT_FALSE(CharToCp1252(u'\u4E2D'));
  EXPECT_FALSE(TextToBytes(u"a\u4E2D"));
  EXPECT_EQ(TextToBytesLossy(u"a\u4E2Db"), "a?b");
}

TEST(EncodingTest, Utf8RoundTripAndRepair) {
  const std::u16string text = u"G\u00FC\u20AC \U0001F600";
  EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
  EXPECT_EQ(ToUtf8(u"\u00FC"), "\xC3\xBC");
  // Bad input becomes U+FFFD and decoding continues after it.
  EXPECT_EQ(FromUtf8("a\xC3" "b"), u"a\uFFFDb");
  EXPECT_EQ(FromUtf8("\xFF"), u"\uFFFD");
  EXPECT_EQ(FromUtf8("\xE0\x80\x80x"), u"\uFFFDx");  // overlong
  EXPECT_EQ(FromUtf8("\xED\xA0\x80"), u"\uFFFD");     // encoded surrogate
  EXPECT_EQ(ToUtf8(std::u16string(1, char16_t{0xD800})), "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace norvik50
