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
      "name":"frmCustomer","left":1500,"top":-300,"width":9000,"height":6000,"windowState":0,
      "caption":"","resId":"","controls":[],"listViews":[],
      "menuBar":false,"topMost":false,"visible":false,"cornerRadius":0,"shadow":false}})"));
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
      "name":"lvwItems","columns":[{"header":"Nr","width":900,"headerResId":""},
      {"header":"Text","width":3000,"headerResId":""},{"header":"New","width":700,"headerResId":""}],
      "rows":[],"sortColumn":0,"sortOrder":0}})"));
}

TEST_F(FormsBatchTest, CaptionsComeFromTheLanguagesLibrary) {
  // The library's path may be a Linux one; %L picks the language's file.
  const std::string library = std::string(NORVIK50_FIXTURE_DIR) + "/Captions_%L.dll";
  ASSERT_EQ(Ask(json{{"member", "tkrSetValue"},
                     {"args", {-2147483646, "SOFTWARE\\VANTEX\\Global", "ResourceDLL", library}}}
                    .dump())["ok"],
            true);
  const std::string form =
      R"({"vt":"Object","type":"Form","v":{"name":"frmCustomer","caption":"Kunde","resId":"1000",)"
      R"("controls":[{"name":"cmdSave","caption":"Sichern","resId":"1001","tooltipResId":"1002"},)"
      R"({"name":"cmdNo","caption":"Nein","resId":"no"},{"name":"labNote","caption":"Hinweis","resId":"1007"}],)"
      R"("listViews":[{"name":"lvw","columns":[{"header":"Menge","width":900,"headerResId":"1005"}]}]}})";
  for (const auto& [language, expected] : std::initializer_list<std::pair<int, const char*>>{
           {1, R"({"name":"frmCustomer","left":0,"top":0,"width":0,"height":0,"windowState":0,
                "caption":"Kunde bearbeiten","resId":"1000","controls":[
                {"name":"cmdSave","caption":"&Speichern","resId":"1001",
                 "tooltip":"Speichert den Kunden & schließt","tooltipResId":"1002"},
                {"name":"cmdNo","caption":"&Nein","resId":"no","tooltip":"","tooltipResId":""},
                {"name":"labNote","caption":"Hinweis","resId":"1007","tooltip":"","tooltipResId":""}],
                "listViews":[{"name":"lvw","columns":[{"header":"Menge","width":900,"headerResId":"1005"}],
                 "rows":[],"sortColumn":0,"sortOrder":0}],
                "menuBar":false,"topMost":false,"visible":false,"cornerRadius":0,"shadow":false})"},
           {2, R"({"name":"frmCustomer","left":0,"top":0,"width":0,"height":0,"windowState":0,
                "caption":"Edit customer","resId":"1000","controls":[
                {"name":"cmdSave","caption":"&Save","resId":"1001",
                 "tooltip":"Saves the customer & closes","tooltipResId":"1002"},
                {"name":"cmdNo","caption":"&No","resId":"no","tooltip":"","tooltipResId":""},
                {"name":"labNote","caption":"Hinweis","resId":"1007","tooltip":"","tooltipResId":""}],
                "listViews":[{"name":"lvw","columns":[{"header":"Quantity","width":900,"headerResId":"1005"}],
                 "rows":[],"sortColumn":0,"sortOrder":0}],
                "menuBar":false,"topMost":false,"visible":false,"cornerRadius":0,"shadow":false})"}}) {
    Ask(json{{"member", "tkrSetValue"},
             {"args", {-2147483647, "SOFTWARE\\VANTEX\\Global", "Language", language}}}
            .dump());
    const json answer = Ask(R"({"member":"tklLoadFormCaptions","args":[)" + form + "]}");
    ASSERT_EQ(answer["ok"], true) << answer.dump();
    EXPECT_EQ(answer["result"], json::parse(R"({"vt":"Long","v":5})")) << language;
    EXPECT_EQ(answer["byref"]["0"]["v"], json::parse(expected)) << language;
  }
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
      {"controls not a list", R"({"vt":"Object","type":"Form","v":{"controls":"cmdOK"}})"},
      {"a control with a field it has not",
       R"({"vt":"Object","type":"Form","v":{"controls":[{"text":"OK"}]}})"},
      {"a resource id that is a number",
       R"({"vt":"Object","type":"Form","v":{"controls":[{"resId":1001}]}})"},
      {"a form's list view with a bad column",
       R"({"vt":"Object","type":"Form","v":{"listViews":[{"columns":[{"headerResId":5}]}]}})"},
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

TEST_F(FormsBatchTest, AFormComesBackShownAndOnTop) {
  const json opened = Ask(
      R"({"member":"tklOpenTopMost","args":[{"vt":"Object","type":"Form","v":{"name":"frmClock","width":3000,"height":2000,"menuBar":true}}]})");
  ASSERT_EQ(opened["ok"], true) << opened.dump();
  EXPECT_EQ(opened["result"]["v"], true);
  EXPECT_EQ(opened["byref"]["0"]["v"]["topMost"], true);
  EXPECT_EQ(opened["byref"]["0"]["v"]["visible"], true);
  EXPECT_EQ(opened["byref"]["0"]["v"]["menuBar"], true);
  const json released = Ask(
      R"({"member":"tklTopMost","args":[{"vt":"Object","type":"Form","v":{"name":"frmClock","topMost":true,"visible":true}},false]})");
  EXPECT_EQ(released["byref"]["0"]["v"]["topMost"], false);
  EXPECT_EQ(released["byref"]["0"]["v"]["visible"], true);
  // The inner size leaves out the frame and the menu bar the form has.
  const json inner = Ask(
      R"({"member":"tklGetInternalFormSize","args":[{"vt":"Object","type":"Form","v":{"width":6120,"height":4675,"menuBar":true}},0,0]})");
  ASSERT_EQ(inner["ok"], true) << inner.dump();
  EXPECT_EQ(inner["byref"]["1"]["v"], 6000);
  EXPECT_EQ(inner["byref"]["2"]["v"], 4000);
  // A flag that is no Boolean is refused.
  const json wrong = Ask(
      R"({"member":"tklTopMost","args":[{"vt":"Object","type":"Form","v":{"topMost":"yes"}}]})");
  EXPECT_EQ(wrong["ok"], false) << wrong.dump();
}

}  // namespace
}  // namespace norvik50::cli
