// List views as typed objects of the batch protocol: the helpers called by
// name change the rows, and the list view comes back with its new state.
#include <gtest/gtest.h>

#include "in_process_batch_for_tests.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class ListViewsBatchTest : public InProcessBatchTest {};

const std::string kList =
    R"({"vt":"Object","type":"ListView","v":{"name":"lvwOrders",)"
    R"("columns":[{"header":"Customer","width":1440},{"header":"Amount","width":900}],)"
    R"("rows":[{"texts":["Miller","10"]},{"texts":["Adams","9"],"checked":true},)"
    R"({"texts":["Baker","100"],"selected":true}]}})";

TEST_F(ListViewsBatchTest, ASortedListViewComesBackWithItsRowsAndSortColumn) {
  const json sorted = Ask(R"({"member":"tklSortListView","args":[)" + kList + ",2]}");
  ASSERT_EQ(sorted["ok"], true) << sorted.dump();
  EXPECT_EQ(sorted["result"], json::parse(R"({"vt":"Integer","v":0})"));
  EXPECT_EQ(sorted["byref"]["0"]["v"]["rows"], json::parse(R"([
      {"texts":["Adams","9"],"checked":true,"selected":false},
      {"texts":["Miller","10"],"checked":false,"selected":false},
      {"texts":["Baker","100"],"checked":false,"selected":true}])"));
  EXPECT_EQ(sorted["byref"]["0"]["v"]["sortColumn"], 2);
  EXPECT_EQ(sorted["byref"]["0"]["v"]["sortOrder"], 0);

  // The list view as it came back, clicked again: descending.
  const json again =
      Ask(json{{"member", "tklSortListView"}, {"args", {sorted["byref"]["0"], 2}}}.dump());
  EXPECT_EQ(again["result"]["v"], 1);
  EXPECT_EQ(again["byref"]["0"]["v"]["rows"][0]["texts"][0], "Baker");
}

TEST_F(ListViewsBatchTest, EveryHelperAnswersByName) {
  struct Case {
    const char* member;
    std::string extra_args;
    json result;
  };
  const Case cases[] = {
      {"tklGetListViewCol", R"(,"amount")", 2},
      {"tklListItemText", ",3,2", "100"},
      {"tklListItemIndex", R"(,"ADAMS")", 2},
      {"tklListCheckedItems", "", 1},
      {"tklListItemChecked", ",1", false},
      {"tklListSelectedItems", "", 1},
      {"tklListItemSelected", ",3", true},
      {"tklSelItemCount", "", 1},
      {"tklSelectedItem", "", "Baker"},
      {"tklHasSelectedItem", "", true},
      {"tklIsSelected", R"(,"baker")", true},
      {"tklSearchListItem", R"(,"mi",1,1,false)", 1},
      {"tklCopyListView", ",false", "Miller\t10\r\nAdams\t9\r\nBaker\t100\r\n"},
  };
  for (const Case& c : cases) {
    const json answer = Ask(std::string(R"({"member":")") + c.member + R"(","args":[)" + kList +
                            c.extra_args + "]}");
    ASSERT_EQ(answer["ok"], true) << c.member << answer.dump();
    EXPECT_EQ(answer["result"]["v"], c.result) << c.member;
  }
}

TEST_F(ListViewsBatchTest, ChangedStateComesBackInByref) {
  const json checked = Ask(R"({"member":"tklListCheckAllItems","args":[)" + kList + "]}");
  ASSERT_EQ(checked["ok"], true) << checked.dump();
  EXPECT_EQ(checked["result"]["v"], 3);
  for (const json& row : checked["byref"]["0"]["v"]["rows"]) EXPECT_EQ(row["checked"], true);

  const json selected = Ask(R"({"member":"tklListSelectItems","args":[)" + kList +
                            R"(,{"vt":"Array","v":[1,2]},true,true]})");
  ASSERT_EQ(selected["ok"], true) << selected.dump();
  EXPECT_EQ(selected["result"]["v"], 2);
  const json& rows = selected["byref"]["0"]["v"]["rows"];
  EXPECT_EQ(rows[0]["selected"], true);
  EXPECT_EQ(rows[1]["selected"], true);
  EXPECT_EQ(rows[2]["selected"], false);

  const json headers =
      Ask(R"({"member":"tklSetListViewHeaders","args":[)" + kList + R"(,"Kunde|Betrag|Datum"]})");
  EXPECT_EQ(headers["result"]["v"], 3);
  EXPECT_EQ(headers["byref"]["0"]["v"]["columns"][2]["header"], "Datum");

  // The indexes come back in the by-reference array.
  const json listed =
      Ask(R"({"member":"tklListCheckedItems","args":[)" + kList + R"(,{"vt":"Array","v":[]}]})");
  ASSERT_EQ(listed["ok"], true) << listed.dump();
  ASSERT_EQ(listed["byref"]["1"]["v"].size(), 1u) << listed.dump();
  EXPECT_EQ(listed["byref"]["1"]["v"][0], json::parse(R"({"vt":"Long","v":2})"));
}

TEST_F(ListViewsBatchTest, StyleAndTooltipsComeBackInByrefAndGoInAgain) {
  const json styled = Ask(R"({"member":"tklSetListViewStyle","args":[)" + kList + ",5]}");
  ASSERT_EQ(styled["ok"], true) << styled.dump();
  EXPECT_EQ(styled["result"], json::parse(R"({"vt":"Long","v":5})"));
  EXPECT_EQ(styled["byref"]["0"]["v"]["style"], 5);

  // The list view as it came back: grid lines off, the rest kept.
  const json cleared = Ask(
      json{{"member", "tklSetListViewStyle"}, {"args", {styled["byref"]["0"], 6, false}}}.dump());
  EXPECT_EQ(cleared["result"]["v"], 1);

  const json tipped = Ask(R"({"member":"tklShowListViewTooltip","args":[)" + kList +
                          R"(,2,2,"net, without VAT"]})");
  ASSERT_EQ(tipped["ok"], true) << tipped.dump();
  EXPECT_EQ(tipped["result"], json::parse(R"({"vt":"String","v":"net, without VAT"})"));
  const json& rows = tipped["byref"]["0"]["v"]["rows"];
  EXPECT_EQ(rows[1]["tooltips"], json::parse(R"(["","net, without VAT"])"));
  EXPECT_FALSE(rows[0].contains("tooltips")) << "a row without tooltips answers as before";

  const json read = Ask(
      json{{"member", "tklShowListViewTooltip"}, {"args", {tipped["byref"]["0"], 2, 2}}}.dump());
  EXPECT_EQ(read["result"]["v"], "net, without VAT");
  const json other_cell =
      Ask(json{{"member", "tklShowListViewTooltip"}, {"args", {tipped["byref"]["0"], 2}}}.dump());
  EXPECT_EQ(other_cell["result"]["v"], "");

  const json bad_bit = Ask(R"({"member":"tklSetListViewStyle","args":[)" + kList + ",256]}");
  EXPECT_EQ(bad_bit["ok"], false);
  EXPECT_EQ(bad_bit["error"]["number"], 5);
}

TEST_F(ListViewsBatchTest, MalformedRowsAreRefused) {
  for (const char* object : {
           R"({"vt":"Object","type":"ListView","v":{"rows":{}}})",
           R"({"vt":"Object","type":"ListView","v":{"rows":[{"text":"a"}]}})",
           R"({"vt":"Object","type":"ListView","v":{"rows":[{"texts":[1]}]}})",
           R"({"vt":"Object","type":"ListView","v":{"rows":[{"checked":1}]}})",
           R"({"vt":"Object","type":"ListView","v":{"sortColumn":1}})",
           R"({"vt":"Object","type":"ListView","v":{"sortOrder":2}})",
           R"({"vt":"Object","type":"ListView","v":{"style":256}})",
           R"({"vt":"Object","type":"ListView","v":{"rows":[{"tooltips":"a"}]}})",
           R"({"vt":"Object","type":"ListView","v":{"rows":[{"tooltips":[true]}]}})",
       }) {
    const json answer = Ask(std::string(R"({"member":"tklSelItemCount","args":[)") + object + "]}");
    EXPECT_EQ(answer["ok"], false) << object;
    EXPECT_EQ(answer["error"]["number"], 5) << object;
  }
}

}  // namespace
}  // namespace norvik50::cli
