// Text fields and status panels as typed objects of the batch protocol:
// read from the request, driven by the field members, written back in the
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

class ControlsBatchTest : public InProcessBatchTest {};

TEST_F(ControlsBatchTest, SelectFieldAnswersWithTheNewState) {
  const json answer = Ask(
      R"({"id":1,"member":"tklSelectField","args":[{"vt":"Object","type":"ListItem","v":{"text":"Meier","selStart":0,"selLength":5}},true,{"vt":"Object","type":"StatusPanel","v":{"text":"Nachname"}}]})");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["byref"]["0"], json::parse(R"({"vt":"Object","type":"ListItem","v":{
      "text":"Meier","enabled":true,"locked":false,"tooltip":"Nachname",
      "selStart":5,"selLength":0,"focused":false}})"));
  // The panel is an argument by value: it does not come back.
  EXPECT_FALSE(answer["byref"].contains("2"));
  const json focus =
      Ask(R"({"member":"tklSetFocus","args":[{"vt":"Object","type":"TextBox","v":{}}]})");
  EXPECT_EQ(focus["byref"]["0"]["v"]["focused"], true);
  EXPECT_EQ(focus["byref"]["0"]["v"]["text"], "");
}

TEST_F(ControlsBatchTest, EveryTypeComesBackAsItWent) {
  for (const char* type :
       {"TextBox", "ComboBox", "ListBox", "ListItem", "Node", "QSCombo", "DCCombo"}) {
    const json object = {{"vt", "Object"},
                         {"type", type},
                         {"v",
                          {{"text", "a\u00e4b"},
                           {"enabled", false},
                           {"locked", true},
                           {"tooltip", "t"},
                           {"selStart", 1},
                           {"selLength", 2},
                           {"focused", true}}}};
    const json answer = Ask(json{{"member", "tklSetFocus"}, {"args", {object}}}.dump());
    EXPECT_EQ(answer["byref"]["0"], object) << type;
  }
}

TEST_F(ControlsBatchTest, ZoomWithoutADisplayLeavesTheTextAndSelectsIt) {
  // The batch under test runs headless: the zoom shows nothing, and the
  // field gets its own text back, selected and focused.
  const json answer = Ask(
      R"({"member":"tklZoomTextBox","args":[{"vt":"Object","type":"TextBox","v":{"text":"Meier","selStart":3}},"Kunde"]})");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  const json& v = answer["byref"]["0"]["v"];
  EXPECT_EQ(v["text"], "Meier");
  EXPECT_EQ(v["selStart"], 0);
  EXPECT_EQ(v["selLength"], 5);
  EXPECT_EQ(v["focused"], true);
  // A status panel is no text field: error 5.
  const json panel = Ask(
      R"({"member":"tklZoomTextBox","args":[{"vt":"Object","type":"StatusPanel","v":{"text":"x"}}]})");
  EXPECT_EQ(panel["ok"], false);
  EXPECT_EQ(panel["error"]["number"], 5);
}

TEST_F(ControlsBatchTest, AMalformedControlIsRefused) {
  struct Case {
    const char* what;
    const char* object;
  };
  const Case cases[] = {
      {"payload not an object", R"({"vt":"Object","type":"TextBox","v":"Meier"})"},
      {"a field the box does not have", R"({"vt":"Object","type":"TextBox","v":{"txt":"a"}})"},
      {"text not a string", R"({"vt":"Object","type":"Node","v":{"text":5}})"},
      {"flag not a Boolean", R"({"vt":"Object","type":"TextBox","v":{"locked":1}})"},
      {"selection not whole", R"({"vt":"Object","type":"TextBox","v":{"selStart":1.5}})"},
      {"selection past a Long", R"({"vt":"Object","type":"TextBox","v":{"selLength":4294967296}})"},
      {"panel with a box's field", R"({"vt":"Object","type":"StatusPanel","v":{"locked":true}})"},
      {"type names are exact", R"({"vt":"Object","type":"textbox","v":{}})"},
  };
  for (const Case& c : cases) {
    const json answer =
        Ask(std::string(R"({"member":"tklSelectField","args":[)") + c.object + "]}");
    EXPECT_EQ(answer["ok"], false) << c.what;
    EXPECT_EQ(answer["error"]["number"], 5) << c.what;
  }
  // A selection outside the text is kept inside it, as a box does.
  const json clamped = Ask(
      R"({"member":"tklSetFocus","args":[{"vt":"Object","type":"TextBox","v":{"text":"ab","selStart":9,"selLength":-4}}]})");
  EXPECT_EQ(clamped["byref"]["0"]["v"]["selStart"], 2);
  EXPECT_EQ(clamped["byref"]["0"]["v"]["selLength"], 0);
}

}  // namespace
}  // namespace norvik50::cli
