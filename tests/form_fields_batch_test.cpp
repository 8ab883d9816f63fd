// The form and field helpers through the batch protocol: containers as
// typed objects, F2 on a text field, open forms without a display.
#include <gtest/gtest.h>

#include "in_process_batch_for_tests.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class FormFieldsBatchTest : public InProcessBatchTest {};

// txtStreet in fraAddress on the page tabAddress of frmCustomer.
constexpr const char* kStreet =
    R"({"vt":"Object","type":"TextBox","v":{"text":"Hauptstr. 1","container":
        {"name":"fraAddress","type":"Frame","container":
        {"name":"tabAddress","type":"TabPage","container":
        {"name":"frmCustomer","type":"Form"}}}}})";

const json kTrue = json::parse(R"({"vt":"Boolean","v":true})");
const json kFalse = json::parse(R"({"vt":"Boolean","v":false})");

json Call(const char* member, const std::vector<json>& args) {
  return json{{"member", member}, {"args", args}};
}

TEST_F(FormFieldsBatchTest, TheContainerComesBackWithWhatHoldsIt) {
  const json field = json::parse(kStreet);
  json answer = Ask(Call("tklGetContainer", {field}).dump());
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["result"], json::parse(R"({"vt":"Object","type":"Container","v":
      {"name":"fraAddress","type":"Frame","container":
      {"name":"tabAddress","type":"TabPage","container":
      {"name":"frmCustomer","type":"Form"}}}})"));
  // The field is an argument by value: it does not come back.
  EXPECT_FALSE(answer.contains("byref"));

  answer = Ask(Call("tklGetContainer", {field, "form"}).dump());
  EXPECT_EQ(answer["result"], json::parse(
                                  R"({"vt":"Object","type":"Container","v":
                                      {"name":"frmCustomer","type":"Form"}})"));
  // None of that kind: Nothing.
  answer = Ask(Call("tklGetContainer", {field, "GroupBox"}).dump());
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["result"], json::parse(R"({"vt":"Object","v":null})"));
}

TEST_F(FormFieldsBatchTest, AContainerIsAControlPlacedInItsTurn) {
  const json answer = Ask(
      R"({"member":"tklGetContainer","args":[{"vt":"Object","type":"Container","v":{"name":"fraAddress","type":"Frame","container":{"name":"frmCustomer","type":"Form"}}}]})");
  EXPECT_EQ(answer["result"]["v"], json::parse(R"({"name":"frmCustomer","type":"Form"})"));
}

TEST_F(FormFieldsBatchTest, BadContainersAreRefusedWithAReason) {
  // A field of no form is no placed control's container: Nothing.
  json answer =
      Ask(R"({"member":"tklGetContainer","args":[{"vt":"Object","type":"TextBox","v":{}}]})");
  EXPECT_EQ(answer["result"], json::parse(R"({"vt":"Object","v":null})"));
  // A status panel sits on no form the library knows.
  answer =
      Ask(R"({"member":"tklGetContainer","args":[{"vt":"Object","type":"StatusPanel","v":{}}]})");
  EXPECT_EQ(answer["ok"], false);
  EXPECT_EQ(answer["error"]["number"], 5);
  // A misspelt field is named, not dropped.
  answer = Ask(
      R"({"member":"tklGetContainer","args":[{"vt":"Object","type":"Container","v":{"nam":"x"}}]})");
  EXPECT_EQ(answer["ok"], false);
  // A chain nested without end stops at the bound, not at the stack's end.
  json deep = {{"name", "f"}, {"type", "Frame"}};
  for (int i = 0; i < 100; ++i) deep = {{"name", "f"}, {"type", "Frame"}, {"container", deep}};
  answer =
      Ask(Call("tklGetContainer", {{{"vt", "Object"}, {"type", "Container"}, {"v", deep}}}).dump());
  EXPECT_EQ(answer["ok"], false);
  EXPECT_NE(answer.dump().find("64"), std::string::npos) << answer.dump();
}

TEST_F(FormFieldsBatchTest, F2ZoomsTheFieldAndZeroesTheKeyCode) {
  // Headless, the zoom shows nothing: the field keeps its text, all of it
  // selected and focused, and keeps its container.
  const json field = json::parse(kStreet);
  json answer = Ask(Call("tklCheckF2Key", {field, {{"vt", "Integer"}, {"v", 113}}}).dump());
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["result"], kTrue);
  EXPECT_EQ(answer["byref"]["1"], json::parse(R"({"vt":"Integer","v":0})"));
  const json& v = answer["byref"]["0"]["v"];
  EXPECT_EQ(v["text"], "Hauptstr. 1");
  EXPECT_EQ(v["selLength"], 11);
  EXPECT_EQ(v["focused"], true);
  EXPECT_EQ(v["container"]["name"], "fraAddress");

  // Shift+F2 and other keys: False, and nothing comes back.
  for (const auto& [key, shift] : std::vector<std::pair<int, int>>{{113, 1}, {65, 0}}) {
    answer = Ask(Call("tklCheckF2Key", {field, key, shift}).dump());
    ASSERT_EQ(answer["ok"], true) << answer.dump();
    EXPECT_EQ(answer["result"], kFalse);
    EXPECT_FALSE(answer.contains("byref")) << answer.dump();
  }
}

TEST_F(FormFieldsBatchTest, TheMouseControlComesBackHoldingTheMouseOrNot) {
  const json button =
      json::parse(R"({"vt":"Object","type":"MousePointer","v":{"width":1200,"height":375}})");
  json answer = Ask(Call("tklCheckMouseMove", {button, 600, 100}).dump());
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["result"], kTrue);
  EXPECT_EQ(answer["byref"]["0"]["v"], json::parse(R"({"MousePointer":0,"width":1200,
      "height":375,"holdsMouse":true})"));
  answer = Ask(Call("tklCheckMouseDown", {answer["byref"]["0"], 600, 400}).dump());
  EXPECT_EQ(answer["result"], kFalse);
  EXPECT_EQ(answer["byref"]["0"]["v"]["holdsMouse"], false);
  // One without a size has no point on it, and comes back as it went:
  // the pointer alone, as tklShowWait's objects do.
  answer = Ask(
      R"({"member":"tklCheckMouseMove","args":[{"vt":"Object","type":"MousePointer","v":{"MousePointer":11}},1,1]})");
  EXPECT_EQ(answer["result"], kFalse);
  EXPECT_EQ(answer["byref"]["0"]["v"], json::parse(R"({"MousePointer":11})"));
  // A misspelt field is refused, not dropped.
  answer = Ask(
      R"({"member":"tklCheckMouseMove","args":[{"vt":"Object","type":"MousePointer","v":{"widht":5}},1,1]})");
  EXPECT_EQ(answer["ok"], false);
}

TEST_F(FormFieldsBatchTest, WithoutADisplayNoFormIsOpen) {
  json answer = Ask(R"({"member":"tklIsFormOpen","args":["frmCustomer"]})");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["result"], kFalse);
  // A form object answers for itself.
  answer = Ask(
      R"({"member":"tklIsFormOpen","args":[{"vt":"Object","type":"Form","v":{"name":"frmA","visible":true}}]})");
  EXPECT_EQ(answer["result"], kTrue) << answer.dump();
  answer = Ask(R"({"member":"tklIsFormOpen","args":[{"vt":"Long","v":3}]})");
  EXPECT_EQ(answer["error"]["number"], 13);
}

}  // namespace
}  // namespace norvik50::cli
