// The built-in resource document, byte for byte, and the lookups on it.
#include "resources/resource_document.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "norvik50/encoding.h"
#include "resources/own_resources.h"

namespace norvik50 {
namespace {

std::string SourceFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

TEST(BuiltinDocumentTest, IsCompiledInByteForByte) {
  const auto bytes = OwnResourceBytes(u"XML", 1);
  ASSERT_TRUE(bytes);
  // Tests run from the source tree.
  EXPECT_EQ(*bytes, SourceFile("src/resources/builtin_resources.xml"));
  // Resource types compare without regard to case; other ids are absent.
  EXPECT_EQ(OwnResourceBytes(u"xml", 1), bytes);
  EXPECT_FALSE(OwnResourceBytes(u"XML", 2));
  EXPECT_FALSE(OwnResourceBytes(u"RTF", 1));
}

TEST(BuiltinDocumentTest, HasTheStoredLayout) {
  const std::string bytes(*OwnResourceBytes(u"XML", 1));
  // Windows-1252, CR LF, a tab before each child, "&" escaped.
  EXPECT_EQ(bytes.substr(0, 13), "<resources>\r\n");
  EXPECT_EQ(bytes.substr(13, 2), "\t<");
  EXPECT_NE(bytes.find("text=\"&amp;R\xE9p\xE9ter\""), std::string::npos);
  EXPECT_NE(bytes.find("name=\"Espan\xF5l\""), std::string::npos);
  std::size_t lone_lf = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\n' && (i == 0 || bytes[i - 1] != '\r')) ++lone_lf;
  }
  EXPECT_EQ(lone_lf, 0u);
  EXPECT_EQ(bytes.substr(bytes.size() - 14), "</resources>\r\n");
}

TEST(BuiltinDocumentTest, HoldsElevenItemsPerLanguageThenTheLanguages) {
  const auto nodes = ResourceDocument().SelectNodes(u"/resources/*");
  ASSERT_EQ(nodes.size(), 8u * 11u + 8u);
  const std::u16string hyphens(65, u'-');
  for (int lang = 1; lang <= 8; ++lang) {
    const auto& first = nodes[(lang - 1) * 11];
    const auto& separator = nodes[(lang - 1) * 11 + 10];
    EXPECT_EQ(first->Attribute(u"name"), u"cmdOK");
    EXPECT_EQ(separator->Attribute(u"name"), hyphens);
    EXPECT_EQ(separator->Xml().find(u"text="), std::u16string::npos);
    EXPECT_EQ(separator->Attribute(u"langid"), std::u16string(1, char16_t(u'0' + lang)));
  }
  EXPECT_EQ(nodes[88]->Xml(), u"<lang langid=\"1\" name=\"Deutsch\" extension=\"DE\"/>");
  EXPECT_EQ(nodes[95]->Attribute(u"extension"), u"HP");
}

TEST(GetResourceItemTest, AnswersTheCaptionTable) {
  const std::u16string hyphens(65, u'-');
  struct Case {
    std::u16string_view name;
    int16_t langid;
    std::u16string_view text;
  } cases[] = {
      {u"yes", 8, u"&Ja"},
      {u"cmdOK", 4, u"Approvazione"},
      {u"cmdCancel", 5, u"Cancelación"},
      {u"retry", 3, u"&Répéter"},
      {u"ignore", 4, u"&Ignore"},  // the Italian entry carries the English text
      {u"abort", 6, u"&Abort"},    // Czech and Polish carry English
      {u"no", 8, u"&Nein"},        // the second German entry
      {u"openresdll", 1, u"Resource Bibliothek (*.DLL)|*.DLL"},
      {u"openresdll", 7, u"Resource Library (*.DLL)|*.DLL"},
      {u"openresdlltitle", 2, u"Please define german (DE) resource library"},
      {u"openresdlltitle", 8, u"Definieren Sie bitte den Standort der deutschen Resource-DLL"},
      {u"unknown", 1, u""},
      {u"yes", 9, u""},
      {u"YES", 1, u""},   // names are case-sensitive
      {hyphens, 1, u""},  // the separator has no text
      {u"a\"b", 1, u""},  // a quote breaks the expression: "" as for no node
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GetResourceItem(c.name, c.langid), c.text) << ToUtf8(c.name) << " " << c.langid;
  }
}

TEST(ResourceDocumentTest, ReloadsTheBuiltInDocumentWhenEmptied) {
  ResourceDocument().LoadXml(u"");
  EXPECT_EQ(GetResourceItem(u"yes", 1), u"&Ja");
  // Other content stays until it is emptied again.
  ResourceDocument().LoadXml(
      u"<resources><item langid=\"1\" name=\"yes\" text=\"J\"/></resources>");
  EXPECT_EQ(GetResourceItem(u"yes", 1), u"J");
  ResourceDocument().LoadXml(u"<broken");
  EXPECT_EQ(GetResourceItem(u"yes", 1), u"&Ja");
}

TEST(ResourceDocumentTest, LanguageCodes) {
  EXPECT_EQ(LanguageCode(1), u"DE");
  EXPECT_EQ(LanguageCode(5), u"ES");
  EXPECT_EQ(LanguageCode(8), u"HP");
  EXPECT_EQ(LanguageCode(0), u"");
  EXPECT_EQ(LanguageCode(9), u"");
}

TEST(LoadResourceTextTest, DropsTheLeadInBeforeTheFirstAngleBracket) {
  EXPECT_EQ(LoadResourceText(1, u"XML").substr(0, 11), u"<resources>");
  EXPECT_EQ(LoadResourceText(2, u"XML"), u"");
  EXPECT_EQ(FromFirstAngleBracket(u"abc<def>"), u"<def>");
  EXPECT_EQ(FromFirstAngleBracket(u"abc"), u"abc");
  EXPECT_EQ(FromFirstAngleBracket(u"<a>b<c>"), u"<a>b<c>");
  EXPECT_EQ(FromFirstAngleBracket(u"\u00EF\u00BB\u00BF<x/>"), u"<x/>");
  EXPECT_EQ(FromFirstAngleBracket(u""), u"");
}

}  // namespace
}  // namespace norvik50
