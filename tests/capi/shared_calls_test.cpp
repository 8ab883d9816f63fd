// The table of calls every binding runs (testdata/bindings/calls.json):
// through the C interface, and through the batch, whose answers are the
// C++ dispatch's. Both must give the answers the table records.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "json_c_values.h"
#include "norvik50/norvik50.h"

namespace norvik50::testing {
namespace {

using json = nlohmann::json;

json Cases() {
  std::ifstream in(std::string(NORVIK50_CALLS_TABLE));
  return json::parse(in).at("cases");
}

// The answer of the C interface to one case, in the table's form.
json AnswerThroughC(norvik50_lib* lib, const json& call) {
  std::vector<norvik50_value*> args;
  for (const json& arg : call.at("args")) args.push_back(ValueFromJson(arg));
  norvik50_value* result = nullptr;
  norvik50_error err = NORVIK50_ERROR_INIT;
  const int how =
      call.value("let", false) ? NORVIK50_PROPERTYLET : (NORVIK50_METHOD | NORVIK50_PROPERTYGET);
  const std::string member = call.at("member");
  const int32_t rc =
      norvik50_invoke(lib, member.c_str(), how, args.data(), args.size(), &result, &err);
  json answer = json::object();
  if (rc != 0) {
    answer["error"] = rc;
    EXPECT_EQ(err.number, rc);
    EXPECT_TRUE(err.description != nullptr && *err.description != '\0');
  } else {
    if (result != nullptr) answer["result"] = ValueToJson(result);
    // Every by-reference parameter the member wrote is in the table's
    // "byref"; the others must hold what the caller passed.
    const json expected_byref = call.at("expect").value("byref", json::object());
    json byref = json::object();
    for (const auto& [index, value] : expected_byref.items()) {
      byref[index] = ValueToJson(args.at(std::stoul(index)));
    }
    if (!byref.empty()) answer["byref"] = byref;
  }
  norvik50_value_free(result);
  for (norvik50_value* arg : args) norvik50_value_free(arg);
  norvik50_error_clear(&err);
  return answer;
}

void ExpectSameAnswer(const json& expected, const json& actual) {
  if (expected.contains("error")) {
    EXPECT_EQ(actual.value("error", 0), expected.at("error")) << actual.dump();
    return;
  }
  ASSERT_FALSE(actual.contains("error")) << actual.dump();
  EXPECT_EQ(expected.contains("result"), actual.contains("result")) << actual.dump();
  if (expected.contains("result") && actual.contains("result")) {
    EXPECT_TRUE(SameValue(expected.at("result"), actual.at("result")))
        << "expected " << expected.at("result").dump() << "\nactual   "
        << actual.at("result").dump();
  }
  const json eb = expected.value("byref", json::object());
  const json ab = actual.value("byref", json::object());
  EXPECT_EQ(eb.size(), ab.size()) << actual.dump();
  for (const auto& [index, value] : eb.items()) {
    ASSERT_TRUE(ab.contains(index)) << "by-reference argument " << index << " not written";
    EXPECT_TRUE(SameValue(value, ab.at(index)))
        << "argument " << index << ": expected " << value.dump() << "\nactual   "
        << ab.at(index).dump();
  }
}

TEST(SharedCallsTest, TheCInterfaceAnswersAsTheTableRecords) {
  norvik50_lib* lib = nullptr;
  ASSERT_EQ(norvik50_lib_new(&lib, nullptr), 0);
  const json cases = Cases();
  ASSERT_GT(cases.size(), 20u);
  for (const json& call : cases) {
    SCOPED_TRACE(call.at("name").get<std::string>());
    ExpectSameAnswer(call.at("expect"), AnswerThroughC(lib, call));
  }
  EXPECT_EQ(norvik50_lib_free(lib), 0);
}

// The batch's answers are the C++ dispatch's: the table holds no answer of
// the C interface's own making.
TEST(SharedCallsTest, TheCppDispatchAnswersAsTheTableRecords) {
  const json cases = Cases();
  const std::string requests = ::testing::TempDir() + "shared_calls.jsonl";
  {
    std::ofstream out(requests);
    for (const json& call : cases) {
      json request = {{"member", call.at("member")}, {"args", call.at("args")}};
      if (call.value("let", false)) request["let"] = true;
      out << request.dump() << '\n';
    }
  }
  const std::string command = std::string(NORVIK50_TOOL) + " batch --headless < " + requests;
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::vector<json> answers;
  char line[65536];
  while (fgets(line, sizeof line, pipe) != nullptr) answers.push_back(json::parse(line));
  pclose(pipe);
  ASSERT_EQ(answers.size(), cases.size());
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(cases[i].at("name").get<std::string>());
    json actual = json::object();
    if (!answers[i].at("ok").get<bool>()) {
      actual["error"] = answers[i].at("error").at("number");
    } else {
      if (answers[i].contains("result")) actual["result"] = answers[i].at("result");
      if (answers[i].contains("byref")) actual["byref"] = answers[i].at("byref");
    }
    ExpectSameAnswer(cases[i].at("expect"), actual);
  }
}

}  // namespace
}  // namespace norvik50::testing
