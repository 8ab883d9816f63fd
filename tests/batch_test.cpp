// The dispatch and the batch protocol end to end: requests as JSON lines,
// answers as JSON lines, through one LIB object.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "batch.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "testing/temp_folder.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

class BatchTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  json Ask(LIB& lib, const std::string& line) { return AnswerRequest(lib, line); }
};

TEST_F(BatchTest, AnswersInOrderAndGoesOnAfterBadLines) {
  std::istringstream in(
      R"({"id":1,"member":"tklGetFullPath","args":["C:\\Temp","x.LOG"]})" "\n"
      "this is not json\n"
      R"({"id":3,"member":"tklNoSuchThing"})" "\n"
      R"({"id":4,"member":"tklSeparateFile","args":[5,"not a record"]})" "\n"
      "\n"
      R"({"id":5,"member":"tklGetFullPath","args":["","f"]})" "\n");
  std::ostringstream out;
  EXPECT_EQ(RunBatch(in, out), 3);
  std::vector<json> answers;
  std::istringstream lines(out.str());
  for (std::string line; std::getline(lines, line);) answers.push_back(json::parse(line));
  ASSERT_EQ(answers.size(), 5u);  // the blank line is skipped, nothing else
  EXPECT_EQ(answers[0]["result"]["v"], "C:\\Temp\\x.LOG");
  EXPECT_EQ(answers[1]["ok"], false);
  EXPECT_EQ(answers[1]["id"], nullptr);
  EXPECT_EQ(answers[2]["error"]["number"], 438);
  EXPECT_EQ(answers[2]["id"], 3);
  EXPECT_EQ(answers[3]["error"]["number"], 13);  // wrong argument type
  EXPECT_EQ(answers[4]["result"]["v"], "\\f");
}

// A call text split by name: the arguments come back as a String array.
TEST_F(BatchTest, SeparateFunctionAnswersItsArgumentsAsAnArray) {
  LIB lib;
  const json a = Ask(lib, R"j({"id":1,"member":"tklSeparateFunction",)j"
                          R"j("args":["Format(x, \"a,b\", f(1, 2))","",null]})j");
  EXPECT_EQ(a["result"]["v"], true);
  EXPECT_EQ(a["byref"]["1"]["v"], "Format");
  const json& args = a["byref"]["2"];
  EXPECT_EQ(args["vt"], "Array");
  EXPECT_EQ(args["lb"], 0);
  ASSERT_EQ(args["v"].size(), 3u);
  EXPECT_EQ(args["v"][1]["v"], "\"a,b\"");
  EXPECT_EQ(args["v"][2]["v"], "f(1, 2)");
}

TEST_F(BatchTest, ArgumentCoercionAndSixteenBitOverflow) {
  LIB lib;
  struct Case {
    const char* request;
    bool ok;
    int error;
  } cases[] = {
      // A Long argument takes numeric text and rounds half to even.
      {R"({"member":"tklErrorMsg","args":["12","d","s"]})", true, 0},
      {R"({"member":"tklErrorMsg","args":["twelve","d","s"]})", false, 13},
      {R"({"member":"tklErrorMsg","args":[3000000000,"d","s"]})", false, 6},
      {R"({"member":"tklErrorMsg","args":[null,"d","s"]})", false, 94},
      // Missing required argument, too many arguments.
      {R"({"member":"tklErrorMsg","args":[1,"d"]})", false, 449},
      {R"({"member":"tklGetFullPath","args":["a","b","c"]})", false, 450},
      // Typed values that cannot be read are malformed requests.
      {R"({"member":"tklGetFullPath","args":[{"vt":"Integer","v":40000},"b"]})", false, 5},
      {R"({"member":"tklGetFullPath","args":[{"vt":"Bogus"},"b"]})", false, 5},
      {R"({"member":7})", false, 5},
      {R"([1,2])", false, 5},
  };
  for (const Case& c : cases) {
    const json answer = Ask(lib, c.request);
    EXPECT_EQ(answer["ok"], c.ok) << c.request << " -> " << answer.dump();
    if (!c.ok) {
      EXPECT_EQ(answer["error"]["number"], c.error) << c.request;
    }
  }
}

TEST_F(BatchTest, ArgumentsConvertInTheCurrentLocale) {
  LIB lib;
  // tklRound(vSourceValue Variant, iDecimalPlaces Integer): the places come
  // as text and convert with the locale's separators; "1,6" rounds to 2 in
  // German (1.6) and is 16 in English, where "," groups thousands.
  const std::string request =
      R"({"member":"tklRound","args":[{"vt":"Double","v":1.23456789},"1,6"]})";
  {
    testing::ScopedLocale german("de-DE");
    EXPECT_EQ(Ask(lib, request)["result"]["v"], 1.23);
  }
  {
    testing::ScopedLocale english("en-US");
    EXPECT_EQ(Ask(lib, request)["result"]["v"], 1.23456789);  // 16 places
  }
  // A String parameter given a Double writes it with the locale's separator.
  testing::ScopedLocale german("de-DE");
  EXPECT_EQ(Ask(lib, R"({"member":"tklGetFullPath","args":["a",{"vt":"Double","v":1.5}]})")["result"]["v"],
            "a\\1,5");
}

TEST_F(BatchTest, IntegerParameterOverflowsAtSixteenBits) {
  // A parameter declared Integer overflows with 6 past 32767, never wraps.
  EXPECT_EQ(CoerceTo(Variant(32767), VarType::kInteger).as_integer(), 32767);
  try {
    CoerceTo(Variant(32768), VarType::kInteger);
    FAIL() << "no overflow";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), 6);
  }
}

TEST_F(BatchTest, ByReferenceRecordIsWrittenBack) {
  LIB lib;
  const json answer = Ask(lib, R"({"id":"a","member":"tklSeparateFile","args":["c:\\data\\report.final.txt",{"vt":"Record","type":"typFileInfo","v":{"lpDrive":"old"}}]})");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["id"], "a");
  EXPECT_EQ(answer["result"], json({{"vt", "Boolean"}, {"v", true}}));
  const json& info = answer["byref"]["1"]["v"];
  EXPECT_EQ(info["lpDrive"], "C");
  EXPECT_EQ(info["lpPath"], "c:\\data\\");
  EXPECT_EQ(info["lpFilename"], "report.final");
  EXPECT_EQ(info["lpExt"], "txt");
  EXPECT_EQ(info["lpFullName"], "c:\\data\\report.final.txt");
  // A record of another type is a type mismatch.
  EXPECT_EQ(Ask(lib, R"({"member":"tklSeparateFile","args":["x",{"vt":"Record","type":"SIZE","v":{}}]})")["error"]["number"], 13);
}

TEST_F(BatchTest, PropertyLetAndGet) {
  LIB lib;
  EXPECT_EQ(Ask(lib, R"({"member":"tklRegKey","let":true,"args":["SOFTWARE\\X"]})")["ok"], true);
  EXPECT_EQ(Ask(lib, R"({"member":"tklRegKey"})")["result"]["v"], "SOFTWARE\\X");
  EXPECT_EQ(Ask(lib, R"({"member":"tklRegKey","let":true,"args":[""]})")["ok"], true);
  EXPECT_EQ(Ask(lib, R"({"member":"tklRegKey"})")["result"]["v"], "SOFTWARE\\VANTEX\\Global");
  // A method has no let form.
  EXPECT_EQ(Ask(lib, R"({"member":"tklTempDir","let":true,"args":["x"]})")["error"]["number"], 438);
}

TEST_F(BatchTest, OmittedOptionalsTakeTheirDefaults) {
  LIB lib;
  // sLogFileName omitted, or marked missing: the line is appended to nvk50err.
  EXPECT_EQ(Ask(lib, R"({"member":"tklLogAction","args":["one"]})")["ok"], true);
  EXPECT_EQ(Ask(lib, R"({"member":"tklLogAction","args":["two",{"missing":true}]})")["ok"], true);
  const std::string log = temp_.Read("nvk50err.LOG");
  EXPECT_NE(log.find("one\r\n"), std::string::npos);
  EXPECT_NE(log.find("two\r\n"), std::string::npos);
}

TEST_F(BatchTest, FolderAttributeTravelsAsTheBooleanValue) {
  LIB lib;
  const std::string request = json({{"member", "tklPathExists"}, {"args", {"Z:" + std::string("\\tmp")}}}).dump();
  const json answer = Ask(lib, request);
  EXPECT_EQ(answer["result"], json({{"vt", "Boolean"}, {"v", 16}}));
}

TEST_F(BatchTest, ToolAnswersTheDocumentedExample) {
  // The command as a host would run it.
  const std::string command = std::string("printf '%s\\n' '{\"id\":1,\"member\":\"tklGetFullPath\",\"args\":[\"C:\\\\Temp\",\"x.LOG\"]}' | ") +
                              NORVIK50_TOOL + " batch";
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string output;
  char buffer[512];
  while (fgets(buffer, sizeof buffer, pipe) != nullptr) output += buffer;
  EXPECT_EQ(pclose(pipe), 0);
  const json answer = json::parse(output);
  EXPECT_EQ(answer["id"], 1);
  EXPECT_EQ(answer["result"]["v"], "C:\\Temp\\x.LOG");
}

}  // namespace
}  // namespace norvik50::cli

namespace norvik50::cli {
namespace {

TEST(BatchObjectsTest, CollectionsTravelAndComeBackCleared) {
  testing::TempFolder temp;
  testing::ScopedEnv tmpdir("TMPDIR", temp.path());
  LIB lib;
  using json = nlohmann::ordered_json;
  json answer = AnswerRequest(lib, R"({"member":"tklClearCollection","args":[{"vt":"Object","type":"Collection","v":[1,"two",3]}]})");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  EXPECT_EQ(answer["byref"]["0"], json({{"vt", "Object"}, {"type", "Collection"}, {"v", json::array()}}));
  answer = AnswerRequest(lib, R"({"member":"tklClearCollection","args":[{"vt":"Object","type":"Collection","v":[1]},true]})");
  EXPECT_EQ(answer["byref"]["0"], json({{"vt", "Object"}, {"v", nullptr}}));  // Nothing
  // Nothing in: the member recovers silently.
  EXPECT_EQ(AnswerRequest(lib, R"({"member":"tklClearCollection","args":[{"vt":"Object","v":null}]})")["ok"], true);
  EXPECT_EQ(AnswerRequest(lib, R"({"member":"tklClearCollection","args":[{"vt":"Object","v":5}]})")["error"]["number"], 5);
}

}  // namespace
}  // namespace norvik50::cli

namespace norvik50::cli {
namespace {

TEST(BatchCodecTest, DeflateAndInflateByName) {
  testing::TempFolder temp;
  testing::ScopedEnv tmpdir("TMPDIR", temp.path());
  LIB lib;
  using json = nlohmann::ordered_json;
  // One character compresses to three.
  json answer = AnswerRequest(lib, R"({"member":"tklGlobalVar","args":["Deflate","A"]})");
  ASSERT_EQ(answer["ok"], true) << answer.dump();
  const std::string packed = answer["result"]["v"].get<std::string>();
  EXPECT_EQ(FromUtf8(packed).size(), 3u);
  const json request = {{"member", "tklGlobalVar"}, {"args", {"INFLATE", packed}}};
  answer = AnswerRequest(lib, request.dump());
  EXPECT_EQ(answer["result"]["v"], "A");
  EXPECT_EQ(AnswerRequest(lib, R"({"member":"tklGlobalVar","args":["SHRINK","A"]})")["error"]["number"], 5);
  EXPECT_EQ(AnswerRequest(lib, R"({"member":"tklGlobalVar","args":["DEFLATE",""]})")["error"]["number"], 5);
}

}  // namespace
}  // namespace norvik50::cli
