// Pictures as typed objects of the batch protocol: made semi-transparent,
// drawn on, and given to list view rows, each coming back with its pixels.
#include <gtest/gtest.h>

#include "in_process_batch_for_tests.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class PicturesBatchTest : public InProcessBatchTest {};

const std::string kRedAndGreen = R"({"vt":"Object","type":"Picture","v":{"width":2,"height":1,)"
                                 R"("pixels":["FFFF0000","ff00ff00"]}})";

TEST_F(PicturesBatchTest, ASemiTransparentCopyComesBackAsAPicture) {
  const json copy =
      Ask(R"({"member":"tklGetSemiTransparentPicture","args":[)" + kRedAndGreen + ",50]}");
  ASSERT_EQ(copy["ok"], true) << copy.dump();
  EXPECT_EQ(copy["result"], json::parse(R"({"vt":"Object","type":"Picture",
      "v":{"width":2,"height":1,"pixels":["80FF0000","8000FF00"]}})"));

  // Green (RGB Long 65280) keyed out, over white.
  const json keyed = Ask(R"({"member":"tklGetSemiTransparentPicture","args":[)" + kRedAndGreen +
                         ",100,65280,16777215]}");
  ASSERT_EQ(keyed["ok"], true) << keyed.dump();
  EXPECT_EQ(keyed["result"]["v"]["pixels"], json::parse(R"(["FFFF0000","FFFFFFFF"])"));
}

TEST_F(PicturesBatchTest, TheTargetOfADrawingComesBackInByref) {
  const json drawn =
      Ask(R"({"member":"glbDrawSemiTransparentPicture","args":[)"
          R"({"vt":"Object","type":"Picture","v":{"width":3,"height":1,"fill":"FF000000"}},)" +
          kRedAndGreen + ",15,0,100]}");
  ASSERT_EQ(drawn["ok"], true) << drawn.dump();
  EXPECT_EQ(drawn["result"]["v"], true);
  EXPECT_EQ(drawn["byref"]["0"]["v"]["pixels"],
            json::parse(R"(["FF000000","FFFF0000","FF00FF00"])"));
}

TEST_F(PicturesBatchTest, ListViewRowsComeBackWithTheirIcons) {
  const std::string list = R"({"vt":"Object","type":"ListView","v":{"columns":[{"header":"File"}],)"
                           R"("rows":[{"texts":["a"]},{"texts":["b"]}]}})";
  const json answer =
      Ask(R"({"member":"tklCopyImageIntoListView","args":[)" + list + "," + kRedAndGreen + ",2]}");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["result"]["v"], 1);
  const json& rows = answer["byref"]["0"]["v"]["rows"];
  // A row without an icon is written as before; one with it carries it.
  EXPECT_FALSE(rows[0].contains("icon"));
  EXPECT_EQ(rows[1]["icon"]["pixels"], json::parse(R"(["FFFF0000","FF00FF00"])"));

  // The list view as it came back keeps the icon for the next call.
  const json again =
      Ask(json{{"member", "tklCopyImageIntoListView"},
               {"args", {answer["byref"]["0"], json::parse(R"({"vt":"Object","v":null})"), 1}}}
              .dump());
  ASSERT_EQ(again["ok"], true) << again.dump();
  EXPECT_TRUE(again["byref"]["0"]["v"]["rows"][1].contains("icon"));
  EXPECT_FALSE(again["byref"]["0"]["v"]["rows"][0].contains("icon"));
}

TEST_F(PicturesBatchTest, MalformedPicturesAreRefused) {
  for (const char* payload : {
           R"([])",                                            // not an object
           R"({"width":1,"height":1,"colour":"FF000000"})",    // unknown field
           R"({"width":2,"height":1,"pixels":["FF000000"]})",  // too few pixels
           R"({"width":1,"height":1,"pixels":["FF0000"]})",    // 6 digits
           R"({"width":1,"height":1,"pixels":["GG000000"]})",  // not hexadecimal
           R"({"width":1,"height":1,"pixels":[4278190080]})",  // a number
           R"({"width":-1,"height":1})",                       // negative size
           R"({"width":30000,"height":30000})",                // too large
           R"({"width":1,"height":1,"fill":"FF000000","pixels":["FF000000"]})",
       }) {
    const json answer = Ask(std::string(R"({"member":"tklGetSemiTransparentPicture","args":[)") +
                            R"({"vt":"Object","type":"Picture","v":)" + payload + "}]}");
    EXPECT_EQ(answer["ok"], false) << payload;
    EXPECT_EQ(answer["error"]["number"], 5) << payload << answer.dump();
  }
}

}  // namespace
}  // namespace norvik50::cli
