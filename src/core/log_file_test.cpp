#include "core/log_file.h"

#include <gtest/gtest.h>

#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

TEST(LogFileTest, LineLayout) {
  EXPECT_EQ(FormatLogLine(u"hello", {2024, 3, 5, 7, 9, 59}),
            "05.03.2024 07:09            hello\r\n");
  // Seconds never show; the message always starts at column 29.
  EXPECT_EQ(FormatLogLine(u"", {999, 12, 31, 23, 59, 0}).size(), 28u + 2u);
}

TEST(LogFileTest, ErrorLineAndNumberText) {
  EXPECT_EQ(FormatErrorLine(13, u"Type mismatch", u"LIB:tkrSetValue()"),
            u"ERR=13 'Type mismatch' (Source=LIB:tkrSetValue())");
  EXPECT_EQ(FormatErrorLine(-5, u"", u""), u"ERR=-5 '' (Source=)");
  EXPECT_EQ(ErrorNumberText(438), u"438");
  EXPECT_EQ(ErrorNumberText(-2147467259), u"&H80004005");
  EXPECT_EQ(ErrorNumberText(-1), u"&HFFFFFFFF");
  EXPECT_EQ(ErrorNumberText(0), u"0");
}

TEST(LogFileTest, TruncateOrAppend) {
  testing::TempFolder temp;
  const std::string path = temp.File("a.LOG");
  EXPECT_TRUE(WriteLogBytes(path, "one\r\n", false));  // append creates
  EXPECT_TRUE(WriteLogBytes(path, "two\r\n", false));
  EXPECT_EQ(temp.Read("a.LOG"), "one\r\ntwo\r\n");
  EXPECT_TRUE(WriteLogBytes(path, "three\r\n", true));
  EXPECT_EQ(temp.Read("a.LOG"), "three\r\n");
  EXPECT_FALSE(WriteLogBytes(temp.path(), "x", true));  // a folder
  EXPECT_FALSE(WriteLogBytes(temp.File("no/such/x"), "x", false));
}

}  // namespace
}  // namespace norvik50
