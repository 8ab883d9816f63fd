// The list-box and option-group helpers by name through the batch
// protocol: lists and option groups as typed values, a list's new choice
// back in the answer.
#include <gtest/gtest.h>

#include "in_process_batch_for_tests.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class ListBoxesBatchTest : public InProcessBatchTest {};

constexpr const char* kFlags =
    R"({"vt":"Object","type":"List","v":{"multiSelect":true,"rows":[)"
    R"({"text":"read","itemData":1,"selected":true},{"text":"write","itemData":2},)"
    R"({"text":"run","itemData":4,"selected":true}]}})";

TEST_F(ListBoxesBatchTest, DataAndSumsOfAList) {
  EXPECT_EQ(Ask(std::string(R"({"member":"tklListBoxData","args":[)") + kFlags + "]}")["result"],
            json::parse(R"({"vt":"Long","v":1})"));
  EXPECT_EQ(
      Ask(std::string(R"({"member":"tklListBoxData","args":[)") + kFlags + ",1]}")["result"]["v"],
      2);
  EXPECT_EQ(
      Ask(std::string(R"({"member":"tklListBoxItemSum","args":[)") + kFlags + "]}")["result"]["v"],
      5);
  EXPECT_EQ(Ask(std::string(R"({"member":"tklListBoxItemSum","args":[)") + kFlags +
                ",true]}")["result"]["v"],
            7);
  const json bad = Ask(std::string(R"({"member":"tklListBoxData","args":[)") + kFlags + ",3]}");
  EXPECT_EQ(bad["ok"], false);
  EXPECT_EQ(bad["error"]["number"], 9);
}

TEST_F(ListBoxesBatchTest, TheChosenRowComesBackInTheAnswer) {
  const json multi =
      Ask(std::string(R"({"member":"tklSelectListBoxItem","args":[)") + kFlags + R"(,"WRITE"]})");
  ASSERT_EQ(multi["ok"], true) << multi.dump();
  EXPECT_EQ(multi["result"]["v"], 1);
  EXPECT_EQ(multi["byref"]["0"]["v"],
            json::parse(R"({"multiSelect":true,"rows":[)"
                        R"({"text":"read","itemData":1,"selected":true},)"
                        R"({"text":"write","itemData":2,"selected":true},)"
                        R"({"text":"run","itemData":4,"selected":true}]})"));
  // A list of plain rows takes one choice and keeps its plain form.
  const json single =
      Ask(R"({"member":"tklSelectListBoxItem","args":[{"vt":"Object","type":"List","v":[)"
          R"({"text":"a","itemData":1,"selected":true},{"text":"b","itemData":2}]},2]})");
  EXPECT_EQ(
      single["byref"]["0"]["v"],
      json::parse(R"([{"text":"a","itemData":1},{"text":"b","itemData":2,"selected":true}])"));
}

TEST_F(ListBoxesBatchTest, IsControlTellsControlsFromOtherValues) {
  EXPECT_EQ(Ask(std::string(R"({"member":"tklIsControl","args":[)") + kFlags + "]}")["result"],
            json::parse(R"({"vt":"Boolean","v":true})"));
  EXPECT_EQ(Ask(R"({"member":"tklIsControl","args":["txtName"]})")["result"]["v"], false);
  EXPECT_EQ(Ask(R"({"member":"tklIsControl","args":[{"vt":"Object","v":null}]})")["result"]["v"],
            false);
}

TEST_F(ListBoxesBatchTest, OptionGroups) {
  EXPECT_EQ(Ask(R"({"member":"tklGetOptionIndex","args":[{"vt":"Object","type":"OptionGroup","v":)"
                R"({"buttons":["Netto","Brutto"],"checked":1}}]})")["result"],
            json::parse(R"({"vt":"Integer","v":1})"));
  EXPECT_EQ(Ask(R"({"member":"tklGetOptionIndex","args":[{"vt":"Object","type":"OptionGroup","v":)"
                R"({"buttons":["Netto"]}}]})")["result"]["v"],
            -1);
  for (const char* payload :
       {R"({"buttons":"Netto"})", R"({"buttons":[1]})", R"({"checked":"1"})", R"({"colour":1})"}) {
    const json bad = Ask(
        std::string(
            R"({"member":"tklGetOptionIndex","args":[{"vt":"Object","type":"OptionGroup","v":)") +
        payload + "}]}");
    EXPECT_EQ(bad["ok"], false) << payload;
  }
}

TEST_F(ListBoxesBatchTest, MalformedListsAreRefused) {
  for (const char* payload : {R"({"rows":[],"sorted":true})", R"({"multiSelect":1})",
                              R"([{"text":"a","selected":"yes"}])", R"({"rows":{}})"}) {
    const json bad = Ask(
        std::string(R"({"member":"tklListBoxItemSum","args":[{"vt":"Object","type":"List","v":)") +
        payload + "}]}");
    EXPECT_EQ(bad["ok"], false) << payload;
  }
}

TEST_F(ListBoxesBatchTest, TabFramesFollowTheTabInFront) {
  const json answer =
      Ask(R"({"member":"tklOnTabClick","args":[{"vt":"Object","type":"TabStrip","v":[)"
          R"({"key":"a","caption":"General"},{"key":"b","caption":"Notes","selected":true}]},)"
          R"({"vt":"Object","type":"TabFrames","v":[{"name":"fraGeneral"},)"
          R"({"name":"fraNotes","visible":false}]}]})");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["result"], json::parse(R"({"vt":"Integer","v":1})"));
  EXPECT_EQ(answer["byref"]["1"]["v"], json::parse(R"([{"name":"fraGeneral","visible":false},)"
                                                   R"({"name":"fraNotes","visible":true}])"));
}

TEST_F(ListBoxesBatchTest, GridsComeBackResizedAndAligned) {
  constexpr const char* kGrid =
      R"({"vt":"Object","type":"Grid","v":{"clientWidth":6000,"columns":[)"
      R"({"width":1000},{"width":2000,"alignment":1}]}})";
  const json resized =
      Ask(std::string(R"({"member":"tklResizeGridCol","args":[)") + kGrid + ",0,500]}");
  ASSERT_EQ(resized["ok"], true) << resized.dump();
  EXPECT_EQ(resized["result"]["v"], 4000);
  EXPECT_EQ(resized["byref"]["0"]["v"]["columns"][0],
            json::parse(R"({"width":4000,"alignment":0})"));
  const json aligned = Ask(std::string(R"({"member":"tklAlignText","args":[)") + kGrid + ",2]}");
  EXPECT_EQ(aligned["byref"]["0"]["v"]["columns"],
            json::parse(R"([{"width":1000,"alignment":2},{"width":2000,"alignment":2}])"));
  for (const char* payload : {R"({"columns":[{"width":1,"alignment":3}]})", R"({"columns":{}})",
                              R"({"clientWidth":"6000"})"}) {
    const json bad =
        Ask(std::string(R"({"member":"tklAlignText","args":[{"vt":"Object","type":"Grid","v":)") +
            payload + "},0]}");
    EXPECT_EQ(bad["ok"], false) << payload;
  }
}

}  // namespace
}  // namespace norvik50::cli
