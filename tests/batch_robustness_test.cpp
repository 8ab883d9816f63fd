// Hostile batch lines: every line ends in exactly one answer and the batch
// goes on, whatever the line holds; texts travel unchanged, unpaired
// surrogates included.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "batch.h"
#include "json_line.h"
#include "json_value.h"
#include "testing/temp_folder.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

std::string Repeat(const std::string& part, int times) {
  std::string out;
  out.reserve(part.size() * static_cast<std::size_t>(times));
  for (int i = 0; i < times; ++i) out += part;
  return out;
}

// `depth` typed values nested in each other around a String, as the
// argument of tklGetFullPath.
std::string NestedArgument(const std::string& open, const std::string& close, int depth) {
  return R"({"id":"deep","member":"tklGetFullPath","args":[)" + Repeat(open, depth) + R"("x")" +
         Repeat(close, depth) + R"(,"y"]})";
}

class BatchRobustnessTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};

  // Runs `lines` through a whole batch; the raw answer lines.
  static std::vector<std::string> RunLines(const std::vector<std::string>& lines) {
    std::string input;
    for (const std::string& line : lines) input += line + "\n";
    std::istringstream in(input);
    std::ostringstream out;
    RunBatch(in, out);
    std::vector<std::string> answers;
    std::istringstream answer_lines(out.str());
    for (std::string line; std::getline(answer_lines, line);) answers.push_back(line);
    return answers;
  }
};

constexpr const char* kFollowUp = R"({"id":"next","member":"tklGetFullPath","args":["C:\\T","f"]})";

TEST_F(BatchRobustnessTest, EveryBadLineIsAnsweredAndTheNextLineToo) {
  struct Case {
    const char* what;
    std::string line;
    int error;
  };
  const std::vector<Case> cases = {
      // Values the decoder used to let escape as uncaught exceptions.
      {"missing not a Boolean", R"({"id":1,"member":"tklLogAction","args":["m",{"missing":1}]})",
       5},
      {"missing with a value",
       R"({"id":1,"member":"tklLogAction","args":["m",{"missing":true,"v":1}]})", 5},
      {"object type a number",
       R"({"id":1,"member":"tklClearCollection","args":[{"vt":"Object","type":5,"v":[]}]})", 5},
      {"Currency overflow",
       R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Currency","v":1e300}]})", 5},
      {"Decimal overflow", R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Decimal","v":1e300}]})",
       5},
      // Typed values out of their type's range are malformed, every type.
      {"Date serial far out", R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Date","v":1e300}]})",
       5},
      {"Date past 9999", R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Date","v":2958466}]})", 5},
      {"Single past FLT_MAX",
       R"({"id":1,"member":"tklSQLDouble","args":[{"vt":"Single","v":1e300}]})", 5},
      {"Currency text out of range",
       R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Currency","v":"922337203685478"}]})", 5},
      {"Currency text with five decimals",
       R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Currency","v":"1.23456"}]})", 5},
      {"Decimal text past 96 bits",
       R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Decimal","v":"79228162514264337593543950336"}]})",
       5},
      {"Integer past 16 bits",
       R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Integer","v":32768}]})", 5},
      {"Array upper bound past a Long",
       R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Array","lb":2147483647,"v":[1,2]}]})", 5},
      {"empty array below the lowest bound",
       R"({"id":1,"member":"tklArrayHasData","args":[{"vt":"Array","lb":-2147483648,"v":[]}]})", 5},
      {"list item data past a Long",
       R"({"id":1,"member":"tklIsEmpty","args":[{"vt":"Object","type":"List","v":[{"text":"a","itemData":99999999999}]}]})",
       5},
      {"number too large for JSON", R"({"id":1,"member":"tklIsEmpty","args":[1e400]})", 5},
      {"closing more than opened", R"(]]]]{"id":1})", 5},
  };
  for (const Case& c : cases) {
    const std::vector<std::string> answers = RunLines({c.line, kFollowUp});
    ASSERT_EQ(answers.size(), 2u) << c.what;
    const json bad = json::parse(answers[0]);
    EXPECT_EQ(bad["ok"], false) << c.what << ": " << answers[0];
    EXPECT_EQ(bad["error"]["number"], c.error) << c.what << ": " << answers[0];
    EXPECT_EQ(json::parse(answers[1])["result"]["v"], "C:\\T\\f") << c.what;
  }
}

TEST_F(BatchRobustnessTest, TheErrorAnswerCarriesTheRequestId) {
  const auto answers = RunLines(
      {R"({"id":{"ticket":7},"member":"tklIsEmpty","args":[{"vt":"Currency","v":1e300}]})"});
  ASSERT_EQ(answers.size(), 1u);
  EXPECT_EQ(json::parse(answers[0])["id"], json({{"ticket", 7}}));
}

TEST_F(BatchRobustnessTest, DeepNestingIsRefusedBeforeAnythingRecurses) {
  // Each of these overflowed the stack before.
  const std::vector<std::string> lines = {
      NestedArgument(R"({"vt":"Array","v":[)", "]}", 20000),
      NestedArgument(R"({"vt":"Object","type":"Collection","v":[)", "]}", 20000),
      NestedArgument(R"({"vt":"Record","type":"typFileInfo","v":{"f":)", "}}", 20000),
      R"({"id":)" + Repeat("[", 100000) + Repeat("]", 100000) + R"(,"member":"tklTempDir"})",
      Repeat("{\"a\":", 100000),  // deep and never closed
  };
  for (const std::string& line : lines) {
    const std::vector<std::string> answers = RunLines({line, kFollowUp});
    ASSERT_EQ(answers.size(), 2u);
    const json bad = json::parse(answers[0]);
    EXPECT_EQ(bad["error"]["number"], 5) << line.substr(0, 60);
    EXPECT_NE(bad["error"]["description"].get<std::string>().find("nested deeper"),
              std::string::npos);
    EXPECT_EQ(json::parse(answers[1])["id"], "next");
  }
}

TEST_F(BatchRobustnessTest, NestingWithinTheLimitIsServed) {
  // The limit counts JSON levels; a typed array takes two of them.
  const int typed_levels = kMaxNesting / 2 - 2;
  const auto answers = RunLines({R"({"id":1,"member":"tklArrayHasData","args":[)" +
                                 Repeat(R"({"vt":"Array","v":[)", typed_levels) + "1" +
                                 Repeat("]}", typed_levels) + "]}"});
  ASSERT_EQ(answers.size(), 1u);
  EXPECT_EQ(json::parse(answers[0])["ok"], true) << answers[0].substr(0, 200);
}

TEST_F(BatchRobustnessTest, UnpairedSurrogatesRoundTripThroughAMember) {
  struct Case {
    const char* source;  // the JSON text of tklMid's source
    int start;
    const char* expected;  // the JSON text the answer must hold
  };
  const Case cases[] = {
      {R"("a\ud800b")", 2, R"("\ud800b")"},               // lone high surrogate
      {R"("a\udc00")", 2, R"("\udc00")"},                 // lone low surrogate
      {R"("\udbff\ud800")", 1, R"("\udbff\ud800")"},      // two highs, no pair
      {R"("x\ud83d\ude00")", 2, "\"\xF0\x9F\x98\x80\""},  // a proper pair stays one character
      {R"("\ud83d\ude00")", 2, R"("\ude00")"},            // cut inside a pair: the low half alone
      {"\"\xEF\xB7\x90z\"", 1, "\"\xEF\xB7\x90z\""},      // U+FDD0 as it stands
      {R"("\ufdd0\ue000")", 1, "\"\xEF\xB7\x90\xEE\x80\x80\""},  // not a kept surrogate
  };
  for (const Case& c : cases) {
    const std::string request = std::string(R"({"id":1,"member":"tklMid","args":[)") + c.source +
                                "," + std::to_string(c.start) + "]}";
    const auto answers = RunLines({request});
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_NE(answers[0].find(std::string(R"("result":{"vt":"String","v":)") + c.expected),
              std::string::npos)
        << c.source << " -> " << answers[0];
  }
}

TEST(JsonValueTest, DatesOutsideTheCalendarAreWrittenAsTheirSerial) {
  // No member should produce one, but writing it must not go through the
  // calendar conversion, which has no year for it.
  EXPECT_EQ(VariantToJson(Variant(Date{1e300})), json({{"vt", "Date"}, {"v", 1e300}}));
  EXPECT_EQ(VariantToJson(Variant(Date{-657435.0})), json({{"vt", "Date"}, {"v", -657435.0}}));
  EXPECT_EQ(VariantToJson(Variant(Date{0.5})),
            json({{"vt", "Date"}, {"v", "1899-12-30T12:00:00"}}));
}

TEST(JsonLineTest, EveryUtf16TextSurvivesTheWireForm) {
  const std::u16string texts[] = {
      u"",
      u"plain",
      std::u16string{0xD800},
      std::u16string{0xDFFF, u'a'},
      std::u16string{0xD83D, 0xDE00},
      std::u16string{0xDE00, 0xD83D},
      std::u16string{0xFDD0},
      std::u16string{0xFDD0, 0xE000},
      std::u16string{0xFDD0, 0xFDD0, 0xD800, 0xE7FF},
  };
  for (const std::u16string& text : texts) {
    const std::string wire = Utf16ToWireText(text);
    EXPECT_EQ(WireTextToUtf16(wire), text);
    // Written as a line and read back, the text is the same again.
    std::string why;
    const auto read = ReadJsonLine(WriteJsonLine(json(wire)), why);
    ASSERT_TRUE(read) << why;
    EXPECT_EQ(WireTextToUtf16(read->get<std::string>()), text);
  }
}

}  // namespace
}  // namespace norvik50::cli
