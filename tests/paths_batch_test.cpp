// The path and file members by name, as a script reaches them: the batch
// protocol in process, and norvik50 call and lzw as commands, on a real
// tree behind drive C:.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "in_process_batch_for_tests.h"
#include "norvik50/host.h"
#include "testing/run_command.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;
namespace fs = std::filesystem;

class PathsBatchTest : public InProcessBatchTest {
 protected:
  fs::path saved_ = fs::current_path();
  void SetUp() override {
    SetDriveRoot(u'C', temp_.File("c"));
    fs::create_directories(temp_.File("c/App/Docs/Old"));
    std::ofstream(temp_.File("c/App/Docs/Old/Report.TXT")) << "r";
    std::ofstream(temp_.File("c/App/.settings")) << "s";
  }
  void TearDown() override {
    fs::current_path(saved_);
    ClearDriveRoot(u'C');
  }
  void Write(const std::string& name, const std::string& bytes) {
    std::ofstream(temp_.File(name), std::ios::binary) << bytes;
  }
  std::string Read(const std::string& name) { return temp_.Read(name); }
};

TEST_F(PathsBatchTest, EveryMemberAnswersByName){const struct {const char * request;
const char* answer;
} cases[] = {
      {R"({"member":"tklGetRelativePath","args":["C:\\App\\Docs\\a.doc","c:\\app"]})",
       R"({"id":null,"ok":true,"result":{"vt":"String","v":".\\Docs\\a.doc"}})"},
      {R"({"member":"tklGetAbsolutePath","args":["..\\a.doc","C:\\App\\Docs"]})",
       R"({"id":null,"ok":true,"result":{"vt":"String","v":"C:\\App\\a.doc"}})"},
      {R"({"member":"tklFindFile","args":["c:\\app","*.txt",true]})",
       R"({"id":null,"ok":true,"result":{"vt":"String","v":"c:\\app\\Docs\\Old\\Report.TXT"}})"},
      // bSubFolders is False when left out.
      {R"({"member":"tklFindFile","args":["c:\\app","*.txt"]})",
       R"({"id":null,"ok":true,"result":{"vt":"String","v":""}})"},
      {R"({"member":"tklCheckAttributes","args":["C:\\App\\.settings",34,0]})",
       R"({"id":null,"ok":true,"result":{"vt":"Boolean","v":true},"byref":{"2":{"vt":"Long","v":34}}})"},
      {R"({"member":"tklCheckAttributes","args":["C:\\App\\none"]})",
       R"({"id":null,"ok":true,"result":{"vt":"Boolean","v":false}})"},
      {R"({"member":"tklChangeToPath","args":["c:\\APP\\docs",""]})",
       R"({"id":null,"ok":true,"result":{"vt":"Boolean","v":true},"byref":{"1":{"vt":"String","v":"C:\\App\\Docs"}}})"},
      {R"({"member":"tklFileStream","args":["C:\\App\\x.bin","\u00ff\u20ac"],"let":true})",
       R"({"id":null,"ok":true})"},
      {R"({"member":"tklFileStream","args":["c:\\app\\X.BIN"]})",
       R"({"id":null,"ok":true,"result":{"vt":"String","v":"ÿ€"}})"},
      {R"({"member":"tklFileStream","args":["C:\\App\\none.bin"]})",
       R"j({"id":null,"ok":false,"error":{"number":53,"description":"File not found (there is no such file: 'C:\\App\\none.bin')","source":"Norvik50.tklFileStream"}})j"},
};
for (const auto& c : cases) EXPECT_EQ(Ask(c.request), json::parse(c.answer)) << c.request;
EXPECT_EQ(Read("c/App/x.bin"), "\xFF\x80");
}

// A file read as byte characters is what DEFLATE takes, and what INFLATE
// gives back writes the same bytes again; the compressed file is the one
// norvik50 lzw makes of the same bytes.
TEST_F(PathsBatchTest, FileStreamsComposeWithTheCodec) {
  std::string bytes;
  for (int round = 0; round < 40; ++round) {
    for (int b = 0; b < 256; ++b) bytes.push_back(static_cast<char>((b * 7 + round) % 256));
  }
  Write("c/App/all.bin", bytes);
  const json plain = Ask(R"({"member":"tklFileStream","args":["C:\\App\\all.bin"]})");
  ASSERT_EQ(plain["ok"], true) << plain.dump();
  const json packed =
      Ask(json{{"member", "tklGlobalVar"}, {"args", {"DEFLATE", plain["result"]}}}.dump());
  ASSERT_EQ(packed["ok"], true) << packed.dump();
  ASSERT_EQ(Ask(json{{"member", "tklFileStream"},
                     {"args", {"C:\\App\\all.lzw", packed["result"]}},
                     {"let", true}}
                    .dump())["ok"],
            true);
  const testing::CommandRun tool =
      testing::RunCommand(std::string(NORVIK50_TOOL) + " lzw deflate " +
                          temp_.File("c/App/all.bin") + " " + temp_.File("tool.lzw"));
  ASSERT_EQ(tool.status, 0) << tool.out;
  EXPECT_EQ(Read("c/App/all.lzw"), Read("tool.lzw"));

  const json stored = Ask(R"({"member":"tklFileStream","args":["C:\\App\\all.lzw"]})");
  const json unpacked =
      Ask(json{{"member", "tklGlobalVar"}, {"args", {"INFLATE", stored["result"]}}}.dump());
  ASSERT_EQ(Ask(json{{"member", "tklFileStream"},
                     {"args", {"C:\\App\\again.bin", unpacked["result"]}},
                     {"let", true}}
                    .dump())["ok"],
            true);
  EXPECT_EQ(Read("c/App/again.bin"), bytes);
}

TEST_F(PathsBatchTest, CallFromTheCommandLine) {
  const testing::CommandRun run = testing::RunCommand(
      std::string(NORVIK50_TOOL) + R"( call tklGetRelativePath 'D:\Data\a\b.txt' 'd:\data\c')");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.out, "..\\a\\b.txt\n");
}

}  // namespace
}  // namespace norvik50::cli
