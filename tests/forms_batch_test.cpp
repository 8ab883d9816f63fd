// Forms and list views as typed objects of the batch protocol: read from
// the request, placed and sized by the members, written back in the answer.
#include <gtest/gtest.h>

#include "core/library_state.h"
#include "in_process_batch_for_tests.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class FormsBatchTest : public InProcessBatchTest {
 protected:
  ~FormsBatchTest() override { SetBaseKey(u""); }
};

TEST_F(FormsBatchTest, AWindowPositionGoesIntoTheStoreAndComesBack) {
  const json saved = Ask(
      R"({"member":"tklSaveWindowPos","args":[{"vt":"Object","type":"Form","v":{"name":"frmCustomer","left":1500,"top":-300,"width":9000,"height":6000,"windowState":1}}]})");
  ASSERT_EQ(saved["ok"], true) << saved.dump();
  EXPECT_EQ(saved["result"], json::parse(R"({"vt":"Boolean","v":true})"));
  // The form read only: it does not come back.
  EXPECT_FALSE(saved.contains("byref"));
  const json stored = Ask(
      R"({"member":"tkrGetLong","args":[-2147483647,"SOFTWARE\\VANTEX\\Global\\Positions\\Forms\\frmCustomer","Top"]})");
  EXPECT_EQ(stored["result"]["v"], -300);

  const json loaded = Ask(
      R"({"member":"tklLoadWindowPos","args":[{"vt":"Object","type":"Form","v":{"name":"frmCustomer","width":10,"height":10}}]})");
  ASSERT_EQ(loaded["ok"], true) << loaded.dump();
  // Minimised went in as normal.
  EXPECT_EQ(loaded["byref"]["0"], json::parse(R"({"vt":"Object","type":"Form","v":{
      "name":"frmCustomer","left":1500,"top":-300,"width":9000,"height":6000,"windowState":0}})"));
  // Position only, under another key: nothing stored there, the form as it came.
  const json elsewhere = Ask(
      R"({"member":"tklLoadWindowPos","args":[{"vt":"Object","type":"Form","v":{"name":"frmCustomer","width":10,"height":10}},"Software\\Other",true]})");
  EXPECT_EQ(elsewhere["result"]["v"], false);
  EXPECT_EQ(elsewhere["byref"]["0"]["v"]["width"], 10);
}

TEST_F(FormsBatchTest, ColumnWidthsGoIntoTheStoreAndComeBack) {
  const std::string form = R"({"vt":"Object","type":"Form","v":{"name":"frmOrders"}})";
  const json saved = Ask(
      R"({"member":"tklSaveColWidths","args":[)" + form +
      R"(,{"vt":"Object","type":"ListView","v":{"name":"lvwItems","columns":[{"header":"Nr","width":900},{"header":"Text","width":3000}]}}]})");
  ASSERT_EQ(saved["ok"], true) << saved.dump();
  const json loaded = Ask(
      R"({"member":"tklLoadColWidths","args":[)" + form +
      R"(,{"vt":"Object","type":"ListView","v":{"name":"lvwItems","columns":[{"header":"Nr"},{"header":"Text","width":5},{"header":"New","width":700}]}}]})");
  ASSERT_EQ(loaded["ok"], true) << loaded.dump();
  EXPECT_EQ(loaded["result"]["v"], true);
  EXPECT_EQ(loaded["byref"]["1"], json::parse(R"({"vt":"Object","type":"ListView","v":{
      "name":"lvwItems","columns":[{"header":"Nr","width":900},{"header":"Text","width":3000},
      {"header":"New","width":700}]}})"));
}

TEST_F(FormsBatchTest, MalformedFormsAndListViewsAreRefused) {
  struct Case {
    const char* what;
    const char* object;
  };
  const Case cases[] = {
      {"payload not an object", R"({"vt":"Object","type":"Form","v":[]})"},
      {"a field a form does not have", R"({"vt":"Object","type":"Form","v":{"caption":5}})"},
      {"a position that is no whole number", R"({"vt":"Object","type":"Form","v":{"left":1.5}})"},
      {"a state the runtime has not", R"({"vt":"Object","type":"Form","v":{"windowState":3}})"},
      {"columns not a list", R"({"vt":"Object","type":"ListView","v":{"columns":{}}})"},
      {"a column that is no object", R"({"vt":"Object","type":"ListView","v":{"columns":[5]}})"},
      {"a misspelt column field",
       R"({"vt":"Object","type":"ListView","v":{"columns":[{"widht":5}]}})"},
  };
  for (const Case& c : cases) {
    const json answer =
        Ask(std::string(R"({"member":"tklSaveWindowPos","args":[)") + c.object + "]}");
    EXPECT_EQ(answer["ok"], false) << c.what;
    EXPECT_EQ(answer["error"]["number"], 5) << c.what;
  }
  // Well-formed, but no form: the member refuses it.
  const json list_as_form = Ask(
      R"({"member":"tklSaveWindowPos","args":[{"vt":"Object","type":"ListView","v":{"name":"lvw"}}]})");
  EXPECT_EQ(list_as_form["error"]["number"], 5);
  EXPECT_EQ(list_as_form["error"]["description"], "The object is no form.");
}

}  // namespace
}  // namespace norvik50::cli
