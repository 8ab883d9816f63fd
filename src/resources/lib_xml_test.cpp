// Items of a host's document and lists and tab strips filled from it.
#include <gtest/gtest.h>

#include <random>

#include "norvik50/encoding.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "norvik50/xml.h"
#include "resources/resource_document.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using Rows = std::vector<MemoryList::Row>;
using Tabs = std::vector<MemoryTabStrip::Tab>;

std::shared_ptr<XmlDocument> Document(std::u16string_view items) {
  auto doc = std::make_shared<XmlDocument>();
  EXPECT_TRUE(doc->LoadXml(u"<resources>" + std::u16string(items) + u"</resources>"));
  return doc;
}

class XmlMembersTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  LIB lib_;
  std::shared_ptr<MemoryList> list_ = std::make_shared<MemoryList>();
  std::shared_ptr<MemoryTabStrip> strip_ = std::make_shared<MemoryTabStrip>();
};

TEST_F(XmlMembersTest, XmlResSelectsByNameAndNumber) {
  const auto doc = Document(
      u"<item name=\"a\" langid=\"2\" number=\"1\" text=\"en1\"/>"
      u"<item name=\"a\" langid=\"1\" number=\"0\" text=\"de0\"/>"
      u"<item name=\"b\" number=\"0\"/>");
  // Omitted number: by name only; the first in document order, whatever
  // its language.
  EXPECT_EQ(lib_.tklXMLRes(doc, u"a"), u"en1");
  EXPECT_EQ(lib_.tklXMLRes(doc, u"a", 0), u"de0");
  EXPECT_EQ(lib_.tklXMLRes(doc, u"a", 1), u"en1");
  EXPECT_EQ(lib_.tklXMLRes(doc, u"a", 2), u"");
  EXPECT_EQ(lib_.tklXMLRes(doc, u"b", 0), u"");    // no text attribute
  EXPECT_EQ(lib_.tklXMLRes(doc, u"a\"", 0), u"");  // a broken expression
  EXPECT_EQ(lib_.tklXMLRes(nullptr, u"a"), u"");
  EXPECT_EQ(lib_.tklXMLRes(list_, u"a"), u"");  // not a document
}

TEST_F(XmlMembersTest, ItemPropReadsAttributes) {
  const auto doc = Document(u"<item name=\"a\" number=\"4\"/>");
  const auto node = doc->SelectSingleNode(u"/resources/item");
  EXPECT_EQ(lib_.tklXMLItemProp(node, u"number"), u"4");
  EXPECT_EQ(lib_.tklXMLItemProp(node, u"text"), u"");
  EXPECT_EQ(lib_.tklXMLItemProp(nullptr, u"number"), u"");
}

TEST_F(XmlMembersTest, FillListAddsTextsWithNumbers) {
  list_->AddItem(u"old");
  const auto doc = Document(
      u"<item name=\"c\" number=\"7\" text=\"Red|#FF0000\"/>"
      u"<item name=\"x\" number=\"1\" text=\"other\"/>"
      u"<item name=\"c\" text=\"no number\"/>"
      u"<item name=\"c\" number=\"12abc\" text=\"not numeric\"/>");
  lib_.tklXMLFillList(doc, list_, u"c");
  EXPECT_EQ(list_->rows(), (Rows{{u"Red|#FF0000", 7}, {u"no number", 0}, {u"not numeric", 0}}));
  lib_.tklXMLFillList(doc, list_, u"none");
  EXPECT_TRUE(list_->rows().empty());  // cleared, nothing added
  list_->AddItem(u"old");
  lib_.tklXMLFillList(nullptr, list_, u"c");
  EXPECT_TRUE(list_->rows().empty());
}

TEST_F(XmlMembersTest, ComboTakesNumbersUpToTheFirstGap) {
  const auto doc = Document(
      u"<item name=\"colors\" number=\"1\" text=\"Green\"/>"
      u"<item name=\"colors\" number=\"0\" text=\"Red|#FF0000\"/>"
      u"<item name=\"colors\" number=\"0\" text=\"Second red\"/>"
      u"<item name=\"colors\" number=\"3\" text=\"Blue\"/>");
  lib_.tklXMLFillComboWithResList(doc, list_, u"colors");
  EXPECT_EQ(list_->rows(), (Rows{{u"Red", 0}, {u"Green", 1}}));
  lib_.tklXMLFillComboWithResList(doc, list_, u"colors", u"00 ");
  EXPECT_EQ(list_->rows(), (Rows{{u"00 Red", 0}, {u"01 Green", 1}}));
  lib_.tklXMLFillComboWithResList(doc, list_, u"none");
  EXPECT_TRUE(list_->rows().empty());
}

// The combo shows, for n = 0, 1, 2 ... up to the first gap, what
// tklXMLRes(n) reads. Random documents with numbers written in odd ways
// (leading zeros, blanks, signs), repeated numbers, items without a number
// or a text, other names and items outside /resources compare the filled
// combo with that loop.
TEST_F(XmlMembersTest, ComboRowsAreWhatXmlResReadsForEachNumber) {
  std::mt19937 rng(1846);
  const std::u16string_view numbers[] = {u"0",  u"1",  u"2",  u"3",   u"4",  u"5", u"01",
                                         u" 1", u"2 ", u"+3", u"4.0", u"-0", u"",  u"x"};
  const std::u16string_view texts[] = {u"A", u"B|#1", u"", u"C|", u"|D", u"E F"};
  for (int round = 0; round < 300; ++round) {
    std::u16string items;
    const int count = static_cast<int>(rng() % 14);
    for (int k = 0; k < count; ++k) {
      std::u16string item = rng() % 6 == 0 ? u"<item name=\"other\"" : u"<item name=\"c\"";
      if (rng() % 8 != 0) {
        item += u" number=\"" + std::u16string(numbers[rng() % std::size(numbers)]) + u"\"";
      }
      if (rng() % 8 != 0) {
        item += u" text=\"" + std::u16string(texts[rng() % std::size(texts)]) + u"\"";
      }
      item += u"/>";
      // Now and then the item sits one level deeper, out of the selection.
      items += rng() % 10 == 0 ? u"<group>" + item + u"</group>" : item;
    }
    const auto doc = Document(items);
    const std::u16string format = rng() % 2 ? u"" : u"0 ";
    Rows want;
    for (int16_t n = 0;; ++n) {
      std::u16string text = lib_.tklXMLRes(doc, u"c", n);
      if (text.empty()) break;
      text = text.substr(0, text.find(u'|'));
      if (!format.empty()) text = DecimalText(n) + u" " + text;
      want.push_back({text, n});
    }
    lib_.tklXMLFillComboWithResList(doc, list_, u"c", format);
    ASSERT_EQ(list_->rows(), want) << ToUtf8(items);
  }
}

TEST_F(XmlMembersTest, ComboCounterEndsAtSixteenBits) {
  // A quote in the name turns the lookup into a union that finds the item
  // whatever its number, so the counter runs to 32767 and its overflow
  // ends the filling quietly.
  const auto doc = Document(u"<item name=\"c\" text=\"All\"/>");
  lib_.tklXMLFillComboWithResList(doc, list_, u"c\"]|/resources/item[@name=\"c");
  ASSERT_EQ(list_->rows().size(), 32768u);
  EXPECT_EQ(list_->rows().back(), (MemoryList::Row{u"All", 32767}));
}

TEST_F(XmlMembersTest, TabStripStopsAtADuplicateKey) {
  const auto doc = Document(
      u"<item name=\"t\" number=\"1\" text=\"General\"/>"
      u"<item name=\"t\" number=\"2\" text=\"Details\"/>"
      u"<item name=\"t\" number=\"2\" text=\"Again\"/>"
      u"<item name=\"t\" number=\"3\" text=\"Never\"/>");
  lib_.tklXMLFillTabStrip(doc, strip_, u"t");
  EXPECT_EQ(strip_->tabs(), (Tabs{{u"T1", u"General"}, {u"T2", u"Details"}}));
  lib_.tklXMLFillTabStrip(doc, strip_, u"none");
  EXPECT_TRUE(strip_->tabs().empty());
}

TEST(MemoryControlsTest, BehaveAsHostControls) {
  MemoryList list;
  EXPECT_EQ(list.NewIndex(), -1);
  list.AddItem(u"a");
  list.AddItem(u"b");
  EXPECT_EQ(list.NewIndex(), 1);
  list.SetItemData(0, 42);
  EXPECT_EQ(list.ItemData(0), 42);
  EXPECT_THROW(list.ItemData(2), Error);
  EXPECT_THROW(list.SetItemData(-1, 0), Error);
  MemoryTabStrip strip;
  strip.Tabs().Add(std::nullopt, u"k", u"one");
  strip.Tabs().Add(1, u"", u"zero");
  strip.Tabs().Add(std::nullopt, u"", u"two");  // empty keys never clash
  try {
    strip.Tabs().Add(std::nullopt, u"k", u"dup");
    ADD_FAILURE() << "a duplicate key was accepted";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), kErrKeyNotUnique);
  }
  EXPECT_THROW(strip.Tabs().Add(9, u"z", u"far"), Error);
  EXPECT_EQ(strip.tabs(), (Tabs{{u"", u"zero"}, {u"k", u"one"}, {u"", u"two"}}));
  // The tab refused for its index did not take its key.
  strip.Tabs().Add(std::nullopt, u"z", u"near");
  // Keys are compared exactly: another case is another key.
  strip.Tabs().Add(std::nullopt, u"K", u"upper");
  // Clear frees every key.
  strip.Tabs().Clear();
  strip.Tabs().Add(std::nullopt, u"k", u"again");
  EXPECT_THROW(strip.Tabs().Add(1, u"k", u"dup"), Error);
  EXPECT_EQ(strip.tabs(), (Tabs{{u"k", u"again"}}));
}

}  // namespace
}  // namespace norvik50
