#include "dialogs/qt/rich_text_reader.h"

#include <gtest/gtest.h>

#include <QTextBlock>
#include <QTextCursor>

namespace norvik50::qt {
namespace {

QString Plain(std::u16string_view source) {
  QTextDocument doc;
  ReadRichText(source, doc);
  return doc.toPlainText();
}

QTextCharFormat FormatAt(const QTextDocument& doc, int position) {
  QTextCursor c(const_cast<QTextDocument*>(&doc));
  c.setPosition(position + 1);
  return c.charFormat();
}

TEST(RichTextReaderTest, TextEscapesAndCharacters) {
  const std::vector<std::pair<std::u16string, QString>> cases = {
      {u"{Hello}", QStringLiteral("Hello")},
      {u"{a\\\\b\\{c\\}}", QStringLiteral("a\\b{c}")},
      {u"{ge\\'e4ndert \\'80}", QString::fromUtf8("geändert €")},
      {u"{\\uc1\\u8364?x}", QString::fromUtf8("€x")},                // the fallback "?" skipped
      {u"{\\uc0\\u-4064x}", QString(QChar(0xF020)) + "x"},           // negative: above 32767
      {u"{a\\par b\\line c\\tab d}", QStringLiteral("a\nb\nc\td")},  // \line is a line separator
      {u"{x}", QStringLiteral("x")},
      {u"{\\*\\generator Writer;}shown", QStringLiteral("shown")},
      {u"{{\\fonttbl{\\f0\\fswiss Tahoma;}}x}", QStringLiteral("x")},
      {u"{{\\colortbl;\\red255\\green0\\blue0;}y}", QStringLiteral("y")},
      {u"{\\unknownword7 z\\~}", QStringLiteral("z")},
  };
  for (const auto& [source, plain] : cases) {
    EXPECT_EQ(Plain(source), plain) << QString::fromStdU16String(source).toStdString();
  }
}

TEST(RichTextReaderTest, UnbalancedBracesAndGarbageNeverFail) {
  EXPECT_EQ(Plain(u"}}a{{b"), QStringLiteral("ab"));
  EXPECT_EQ(Plain(u"{\\"), QString());
  EXPECT_EQ(Plain(u"\\'zz"), QStringLiteral("zz"));
  EXPECT_EQ(Plain(u"\\fs99999999999999 x"), QStringLiteral("x"));
  // Deeper than the limit: the extra braces are ignored, the text stays.
  const std::u16string deep = std::u16string(10000, u'{') + u"deep" + std::u16string(10000, u'}');
  EXPECT_EQ(Plain(deep), QStringLiteral("deep"));
}

TEST(RichTextReaderTest, CharacterFormatsFollowGroups) {
  QTextDocument doc;
  ReadRichText(
      u"{{\\colortbl;\\red255\\green0\\blue0;}{\\b B}{\\i I}{\\ul U}{\\strike S}"
      u"{\\fs40 L}{\\cf1 R}\\b\\plain P}",
      doc);
  ASSERT_EQ(doc.toPlainText(), QStringLiteral("BIUSLRP"));
  EXPECT_EQ(FormatAt(doc, 0).fontWeight(), QFont::Bold);
  EXPECT_TRUE(FormatAt(doc, 1).fontItalic());
  EXPECT_EQ(FormatAt(doc, 1).fontWeight(), QFont::Normal);  // the group ended
  EXPECT_TRUE(FormatAt(doc, 2).fontUnderline());
  EXPECT_TRUE(FormatAt(doc, 3).fontStrikeOut());
  EXPECT_EQ(FormatAt(doc, 4).fontPointSize(), 20.0);
  EXPECT_EQ(FormatAt(doc, 5).foreground().color(), QColor(255, 0, 0));
  EXPECT_EQ(FormatAt(doc, 6).fontWeight(), QFont::Normal);  // \plain after \b
}

TEST(RichTextReaderTest, FontsAndParagraphAlignment) {
  QTextDocument doc;
  ReadRichText(u"{{\\fonttbl{\\f1\\fmodern Courier New;}}\\qc\\f1 C\\par\\pard L\\par\\qr R}", doc);
  EXPECT_EQ(FormatAt(doc, 0).fontFamilies().toStringList(), QStringList{"Courier New"});
  EXPECT_EQ(doc.findBlockByNumber(0).blockFormat().alignment(), Qt::AlignHCenter);
  EXPECT_EQ(doc.findBlockByNumber(1).blockFormat().alignment(), Qt::AlignLeft);
  EXPECT_EQ(doc.findBlockByNumber(2).blockFormat().alignment(), Qt::AlignRight);
}

}  // namespace
}  // namespace norvik50::qt
