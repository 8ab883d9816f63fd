// The resource members by name through the batch protocol: documents,
// nodes, lists and tab strips as typed values, filled controls in the
// answer.
#include <gtest/gtest.h>

#include "batch.h"
#include "core/library_state.h"
#include "in_process_batch_for_tests.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class ResourcesBatchTest : public InProcessBatchTest {};

constexpr const char* kDocument =
    R"({"vt":"Object","type":"XmlDocument","v":{"xml":"<resources><item name=\"c\" number=\"4\" text=\"Red|#F00\"/><item name=\"c\" number=\"0\" text=\"Green\"/></resources>"}})";

TEST_F(ResourcesBatchTest, AFilledListComesBackInTheAnswer) {
  const json answer = Ask(std::string(R"({"id":1,"member":"tklXMLFillList","args":[)") + kDocument +
                          R"(,{"vt":"Object","type":"List","v":[{"text":"old"}]},"c"]})");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["byref"]["1"],
            json::parse(R"({"vt":"Object","type":"List","v":[{"text":"Red|#F00","itemData":4},)"
                        R"({"text":"Green","itemData":0}]})"));
  const json combo = Ask(std::string(R"({"member":"tklXMLFillComboWithResList","args":[)") +
                         kDocument + R"(,{"vt":"Object","type":"List","v":[]},"c","0: "]})");
  EXPECT_EQ(combo["byref"]["1"]["v"], json::parse(R"([{"text":"0: Green","itemData":0}])"));
  const json tabs = Ask(std::string(R"({"member":"tklXMLFillTabStrip","args":[)") + kDocument +
                        R"(,{"vt":"Object","type":"TabStrip","v":[]},"c"]})");
  EXPECT_EQ(tabs["byref"]["1"]["v"],
            json::parse(R"([{"key":"T4","caption":"Red|#F00","selected":true},)"
                        R"({"key":"T0","caption":"Green"}])"));
}

TEST_F(ResourcesBatchTest, DocumentsAndNodesAsArguments) {
  EXPECT_EQ(Ask(std::string(R"({"member":"tklXMLRes","args":[)") + kDocument +
                R"(,"c",0]})")["result"]["v"],
            "Green");
  EXPECT_EQ(
      Ask(R"({"member":"tklXMLItemProp","args":[{"vt":"Object","type":"XmlNode","v":{"xml":"<item number=\"7\"/>"}},"number"]})")
          ["result"]["v"],
      "7");
  // A document that does not load is a malformed request.
  const json bad = Ask(
      R"({"member":"tklXMLRes","args":[{"vt":"Object","type":"XmlDocument","v":{"xml":"<a>"}},"c"]})");
  EXPECT_EQ(bad["ok"], false);
  EXPECT_EQ(bad["error"]["number"], 5);
  // Nothing is no document: "" without an error.
  EXPECT_EQ(Ask(R"({"member":"tklXMLRes","args":[{"vt":"Object","v":null},"c"]})")["result"]["v"],
            "");
}

TEST_F(ResourcesBatchTest, LanguagesAndSubstitution) {
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(int32_t{2}));
  EXPECT_EQ(Ask(R"({"member":"tklLanguage"})")["result"], json::parse(R"({"vt":"Integer","v":2})"));
  EXPECT_EQ(Ask(R"({"member":"tklLangCode"})")["result"]["v"], "EN");
  EXPECT_EQ(Ask(R"({"member":"tklLanguages"})")["result"],
            json::parse(R"({"vt":"Array","lb":0,"v":[]})"));
  const json conv = Ask(
      R"({"member":"tklResConv","args":["%s has %d\\n",{"vt":"Array","lb":0,"v":[{"vt":"Integer","v":3},"Anna"]}]})");
  EXPECT_EQ(conv["result"]["v"], "Anna has 3\n");
  EXPECT_FALSE(conv.contains("byref"));  // Vars is not changed
  SetBaseKey(u"");
}

}  // namespace
}  // namespace norvik50::cli
