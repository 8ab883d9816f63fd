// The property bag, the named objects and the value scrambler by name, as
// a host driving the batch reaches them: one LIB object for the whole
// batch, so what a line keeps is there for the next.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "batch.h"
#include "json_line.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class NamedValuesBatchTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  testing::ScopedEnv store_dir_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};

  // The answers to `requests`, one batch; strings in the batch's wire form.
  std::vector<json> Run(const std::vector<json>& requests) {
    std::string lines;
    for (const json& r : requests) lines += WriteJsonLine(r) + "\n";
    std::istringstream in(lines);
    std::ostringstream out;
    RunBatch(in, out);
    std::vector<json> answers;
    std::istringstream read(out.str());
    for (std::string line; std::getline(read, line);) {
      std::string why;
      answers.push_back(ReadJsonLine(line, why).value_or(json(why)));
    }
    return answers;
  }
  // A string in the wire form.
  static json Wire(std::u16string_view text) { return Utf16ToWireText(text); }
};

TEST_F(NamedValuesBatchTest, PropertiesLastFromLineToLine) {
  const json collection = {
      {"vt", "Object"}, {"type", "Collection"}, {"v", {{{"vt", "String"}, {"v", "a"}}}}};
  const auto answers = Run({
      {{"member", "tklProperty"}, {"let", true}, {"args", {"Server", "db01"}}},
      {{"member", "tklProperty"}, {"args", {"SERVER"}}},
      {{"member", "tklProperty"}, {"let", true}, {"args", {"Items", collection}}},
      {{"member", "tklProperty"}, {"args", {"items"}}},
      {{"member", "tklProperty"}, {"let", true}, {"args", {"server", {{"vt", "Empty"}}}}},
      {{"member", "tklProperty"}, {"args", {"Server"}}},
      {{"member", "tklProperty"}, {"args", {""}}},
  });
  ASSERT_EQ(answers.size(), 7u);
  EXPECT_EQ(answers[0]["ok"], true) << answers[0].dump();
  EXPECT_EQ(answers[1]["result"], json({{"vt", "String"}, {"v", "db01"}}));
  EXPECT_EQ(answers[3]["result"], collection);
  EXPECT_EQ(answers[5]["result"], json({{"vt", "Empty"}}));  // forgotten
  EXPECT_EQ(answers[6]["error"]["number"], 5);
}

TEST_F(NamedValuesBatchTest, EncryptStoreReadDecrypt) {
  // A text with a lone surrogate: on the line it is JSON's "\ud800".
  const json plain = Wire(u"Kennwort \u00FC \xD800");
  auto answers = Run({{{"member", "tklEncryptedValue"}, {"args", {plain}}}});
  ASSERT_EQ(answers[0]["ok"], true) << answers[0].dump();
  const json scrambled = answers[0]["result"]["v"];
  ASSERT_TRUE(scrambled.get<std::string>().starts_with("nvk1:"));
  std::string changed = scrambled.get<std::string>();
  changed[10] = changed[10] == 'A' ? 'B' : 'A';
  answers = Run({
      {{"member", "tkrSetValue"},
       {"args", {{{"vt", "Long"}, {"v", HKEY_CURRENT_USER}}, "Software\\App", "Pwd", scrambled}}},
      {{"member", "tkrGetString"},
       {"args", {{{"vt", "Long"}, {"v", HKEY_CURRENT_USER}}, "Software\\App", "Pwd"}}},
      {{"member", "tklDecryptedValue"}, {"args", {scrambled}}},
      {{"member", "tklDecryptedValue"}, {"args", {changed}}},
      {{"member", "tklDecryptedValue"}, {"args", {"never encrypted"}}},
  });
  ASSERT_EQ(answers.size(), 5u);
  EXPECT_EQ(answers[1]["result"]["v"], scrambled);
  EXPECT_EQ(answers[2]["result"]["v"], plain) << answers[2].dump();
  EXPECT_EQ(answers[3]["error"]["number"], 5);
  EXPECT_EQ(answers[4]["error"]["number"], 5);
  EXPECT_NE(answers[4]["error"]["description"].get<std::string>().find("nvk1:"), std::string::npos);
}

TEST_F(NamedValuesBatchTest, NamedObjectsAsTypedValues) {
  const auto answers = Run({
      {{"member", "tklGlobalObj"}, {"args", {"collection", {{"vt", "Array"}, {"v", {"x", 2}}}}}},
      {{"member", "tklGlobalObj"}, {"args", {"XmlDocument", "<resources/>"}}},
      {{"member", "tklGlobalObj"}, {"args", {"Dictionary"}}},
  });
  ASSERT_EQ(answers.size(), 3u);
  EXPECT_EQ(answers[0]["result"]["type"], "Collection");
  EXPECT_EQ(answers[0]["result"]["v"].size(), 2u);
  EXPECT_EQ(answers[1]["result"]["type"], "XmlDocument");
  EXPECT_EQ(answers[1]["result"]["v"]["xml"], "<resources/>");
  EXPECT_EQ(answers[2]["error"]["number"], 5);
}

}  // namespace
}  // namespace norvik50::cli
