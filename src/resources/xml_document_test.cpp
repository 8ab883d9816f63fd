// The public XML document and node types.
#include "norvik50/xml.h"

#include <gtest/gtest.h>

#include <fstream>

#include "norvik50/encoding.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

TEST(XmlDocumentTest, LoadsSelectsAndSerialises) {
  XmlDocument doc;
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_EQ(doc.Xml(), u"");
  ASSERT_TRUE(doc.LoadXml(
      u"<resources><item name=\"a\" text=\"Ä &amp; B\"/><item name=\"b\"/></resources>"));
  EXPECT_FALSE(doc.IsEmpty());
  const auto node = doc.SelectSingleNode(u"/resources/item[@name=\"a\"]");
  ASSERT_TRUE(node);
  EXPECT_EQ(node->Attribute(u"text"), u"Ä & B");
  EXPECT_EQ(node->Attribute(u"number"), u"");
  EXPECT_EQ(node->Name(), u"item");
  EXPECT_EQ(doc.SelectNodes(u"//item").size(), 2u);
  // Nothing selected and broken expressions both give nothing.
  EXPECT_EQ(doc.SelectSingleNode(u"/resources/item[@name=\"c\"]"), nullptr);
  EXPECT_EQ(doc.SelectSingleNode(u"/resources/item[@name=\"a\"b\"]"), nullptr);
  EXPECT_TRUE(doc.SelectNodes(u"///").empty());
  // Expressions that are valid but select no nodes.
  EXPECT_EQ(doc.SelectSingleNode(u"1 + 1"), nullptr);
  EXPECT_TRUE(doc.SelectNodes(u"string(/resources)").empty());
}

TEST(XmlDocumentTest, MalformedTextLeavesItEmpty) {
  XmlDocument doc;
  ASSERT_TRUE(doc.LoadXml(u"<a/>"));
  EXPECT_FALSE(doc.LoadXml(u"<a><b></a>"));
  EXPECT_TRUE(doc.IsEmpty());
}

TEST(XmlDocumentTest, NodesOutliveNewContent) {
  XmlDocument doc;
  ASSERT_TRUE(doc.LoadXml(u"<r><i t=\"old\"/></r>"));
  const auto node = doc.SelectSingleNode(u"/r/i");
  ASSERT_TRUE(doc.LoadXml(u"<r><i t=\"new\"/></r>"));
  EXPECT_EQ(node->Attribute(u"t"), u"old");
  EXPECT_EQ(doc.SelectSingleNode(u"/r/i")->Attribute(u"t"), u"new");
}

TEST(XmlDocumentTest, LoadsFilesInTheirDeclaredEncoding) {
  testing::TempFolder temp;
  std::ofstream(temp.File("ansi.xml"), std::ios::binary)
      << "<?xml version=\"1.0\" encoding=\"windows-1252\"?><r t=\"\x80 \xE4\"/>";
  std::ofstream(temp.File("utf8.xml"), std::ios::binary) << "\xEF\xBB\xBF<r t=\"\xE2\x82\xAC\"/>";
  auto path = [&](const char* name) { return FromUtf8(temp.File(name)); };
  XmlDocument doc;
  ASSERT_TRUE(doc.Load(path("ansi.xml")));
  EXPECT_EQ(doc.SelectSingleNode(u"/r")->Attribute(u"t"), u"€ ä");
  ASSERT_TRUE(doc.Load(path("utf8.xml")));
  EXPECT_EQ(doc.SelectSingleNode(u"/r")->Attribute(u"t"), u"€");
  EXPECT_FALSE(doc.Load(u"/no/such/file.xml"));
  EXPECT_TRUE(doc.IsEmpty());
}

}  // namespace
}  // namespace norvik50
