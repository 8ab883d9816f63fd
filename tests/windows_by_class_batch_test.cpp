// Windows by class and the pointer confinement by name through the batch
// protocol, as a batch job without a display meets them: the windows of
// other programs cannot be seen there, and the pointer cannot be held.
#include <gtest/gtest.h>

#include "in_process_batch_for_tests.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class WindowsByClassBatchTest : public InProcessBatchTest {};

TEST_F(WindowsByClassBatchTest, WithoutADisplayTheWindowListIsNotAvailable) {
  for (const char* line : {R"({"member":"tklFindWindow","args":["XTerm"]})",
                           R"({"member":"tklWaitForClassStarted","args":["XTerm",0]})",
                           R"({"member":"tklWaitForClassFinished","args":["XTerm",50]})"}) {
    const json answer = Ask(line);
    ASSERT_EQ(answer["ok"], false) << line;
    EXPECT_EQ(answer["error"]["number"], 438) << line;
    EXPECT_EQ(answer["error"]["description"].get<std::string>().rfind(
                  "not available on this platform: ", 0),
              0u)
        << answer.dump();
  }
}

TEST_F(WindowsByClassBatchTest, BadArgumentsAreRefusedBeforeTheDesktopIsAsked) {
  for (const char* line : {R"({"member":"tklFindWindow","args":["",""]})",
                           R"({"member":"tklWaitForClassStarted","args":[""]})",
                           R"({"member":"tklWaitForClassFinished","args":["XTerm",3600001]})",
                           R"({"member":"tklClipCursor","args":[0,0,-15,150]})"}) {
    const json answer = Ask(line);
    ASSERT_EQ(answer["ok"], false) << line;
    EXPECT_EQ(answer["error"]["number"], 5) << line;
  }
}

TEST_F(WindowsByClassBatchTest, ThePointerCannotBeHeldButReleasingSucceeds) {
  EXPECT_EQ(Ask(R"({"member":"tklClipCursor","args":[1500,1500,3000,3000]})")["result"],
            json::parse(R"({"vt":"Boolean","v":false})"));
  EXPECT_EQ(Ask(R"({"member":"tklClipCursor"})")["result"],
            json::parse(R"({"vt":"Boolean","v":true})"));
  EXPECT_EQ(Ask(R"({"member":"tklClipCursor","args":[1500,1500,0,3000]})")["result"],
            json::parse(R"({"vt":"Boolean","v":true})"));
}

}  // namespace
}  // namespace norvik50::cli
