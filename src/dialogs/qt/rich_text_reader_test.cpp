#include "dialogs/qt/rich_text_reader.h"

#include <gtest/gtest.h>

#include <QTextBlock>
#include <QTextCursor>

namespace norvik50::qt {
namespace {

QString Plain(std::u16string_view source, qsizetype max_shown = kMaxRichTextShown) {
  QTextDocument doc;
  ReadRichText(source, doc, max_shown);
  return doc.toPlainText();
}

const QString kCut = QString(QChar(kRichTextCutMarker));

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

// The tables may be given again after text that used them: that text keeps
// the colour and font it was written in.
TEST(RichTextReaderTest, TextKeepsTheTablesItWasWrittenIn) {
  QTextDocument doc;
  ReadRichText(
      u"{{\\colortbl;\\red255\\green0\\blue0;}{\\fonttbl{\\f1 Courier New;}}\\f1\\cf1 A"
      u"{\\colortbl;\\red0\\green0\\blue255;}{\\fonttbl{\\f1 Tahoma;}}B}",
      doc);
  ASSERT_EQ(doc.toPlainText(), QStringLiteral("AB"));
  EXPECT_EQ(FormatAt(doc, 0).foreground().color(), QColor(255, 0, 0));
  EXPECT_EQ(FormatAt(doc, 0).fontFamilies().toStringList(), QStringList{"Courier New"});
  EXPECT_EQ(FormatAt(doc, 1).foreground().color(), QColor(0, 0, 255));
  EXPECT_EQ(FormatAt(doc, 1).fontFamilies().toStringList(), QStringList{"Tahoma"});
}

// Toggles inside one paragraph: every character has the format of the
// words before it, whether the text between them is long or one letter.
TEST(RichTextReaderTest, ToggledFormatsCharacterByCharacter) {
  QTextDocument doc;
  ReadRichText(u"{ab\\b cd\\b0 e\\i f\\i0\\ul gh\\ulnone i\\'e4\\b\\'e4\\b0\\'e4}", doc);
  ASSERT_EQ(doc.toPlainText(), QString::fromUtf8("abcdefghiäää"));
  const std::string bold = "001100000010", italic = "000001000000", under = "000000110000";
  for (int i = 0; i < 12; ++i) {
    const QTextCharFormat f = FormatAt(doc, i);
    EXPECT_EQ(f.fontWeight() == QFont::Bold, bold[i] == '1') << i;
    EXPECT_EQ(f.fontItalic(), italic[i] == '1') << i;
    EXPECT_EQ(f.fontUnderline(), under[i] == '1') << i;
  }
}

// A control word is every letter after the backslash: an overlong one is
// one unknown word, not a word followed by text.
TEST(RichTextReaderTest, ControlWordsOfAnyLength) {
  for (const std::size_t letters : {33u, 1000u, 1000000u}) {
    const std::u16string word(letters, u'b');
    EXPECT_EQ(Plain(u"{\\" + word + u"7 x\\" + word + u"}"), QStringLiteral("x")) << letters;
  }
}

// Past `max_shown` characters the text is cut and ends in the marker;
// paragraph ends count as one character.
TEST(RichTextReaderTest, LongTextIsCutWithAMarker) {
  const std::vector<std::pair<std::u16string, QString>> cases = {
      {u"{abcde}", QStringLiteral("abcde")},          // exactly the limit: whole
      {u"{abcdef}", QStringLiteral("abcde") + kCut},  // one more: cut
      {u"{ab\\b cd\\b0 efgh}", QStringLiteral("abcde") + kCut},
      {u"{ab\\par cd\\par ef}", QStringLiteral("ab\ncd") + kCut},
      {u"{abc\\par de\\par}", QStringLiteral("abc\nd") + kCut},
      {u"{abcde\\par}", QStringLiteral("abcde") + kCut},
      {u"{abcd\\'e4\\'e4}", QString::fromUtf8("abcdä") + kCut},
      {u"{abc\\line\\tab\\u8364?x}", QStringLiteral("abc\n\t") + kCut},
      // Half a surrogate pair is not shown.
      {u"{abcd\U0001F600}", QStringLiteral("abcd") + kCut},
      {u"{abc\U0001F600}", QStringLiteral("abc\U0001F600")},
  };
  for (const auto& [source, plain] : cases) {
    EXPECT_EQ(Plain(source, 5), plain) << QString::fromStdU16String(source).toStdString();
  }
  EXPECT_EQ(Plain(u"{abc}", 0), kCut);
  EXPECT_EQ(Plain(u"{}", 0), QString());
}

TEST(RichTextReaderTest, TheMarkerHasTheFormatOfTheTextItEnds) {
  QTextDocument doc;
  ReadRichText(u"{a{\\b bcdef}}", doc, 3);
  ASSERT_EQ(doc.toPlainText(), QStringLiteral("abc") + kCut);
  EXPECT_EQ(FormatAt(doc, 3).fontWeight(), QFont::Bold);
  ReadRichText(u"{abc\\par{\\i x}}", doc, 4);
  ASSERT_EQ(doc.toPlainText(), QStringLiteral("abc\n") + kCut);
  EXPECT_TRUE(FormatAt(doc, 4).fontItalic());
}

// A megabyte of text, of each kind a host may send, ends at the default
// limit.
TEST(RichTextReaderTest, AMegabyteIsCutAtTheDefaultLimit) {
  for (const std::u16string_view piece :
       {u"Wort ", u"a\\line ", u"\\'e4", u"\\b x\\b0 y", u"z\\par "}) {
    std::u16string source;
    while (source.size() < 1000000) source += piece;
    const QString plain = Plain(source);
    EXPECT_EQ(plain.size(), kMaxRichTextShown + 1)
        << QString::fromStdU16String(std::u16string(piece)).toStdString();
    EXPECT_TRUE(plain.endsWith(kCut));
  }
}

}  // namespace
}  // namespace norvik50::qt
