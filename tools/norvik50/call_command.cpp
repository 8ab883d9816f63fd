#include <iostream>
#include <string>
#include <vector>

#include "batch.h"
#include "commands.h"
#include "json_value.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

// An argument that is valid JSON is read as a typed value (123, true,
// {"vt":"Integer","v":3}, "\"quoted\""); anything else is plain text, so
// paths and words need no quoting.
json ArgumentToJson(const std::string& arg) {
  json parsed = json::parse(arg, nullptr, false);
  if (parsed.is_discarded()) return json(arg);
  return parsed;
}

// A scalar result as a script wants it: text as it stands, numbers plainly.
std::string PlainText(const json& typed) {
  const std::string vt = typed.value("vt", "");
  if (vt == "Empty") return "";
  if (vt == "Null") return "Null";
  const json& v = typed.contains("v") ? typed["v"] : json(nullptr);
  if (v.is_string()) return v.get<std::string>();
  if (vt == "Boolean" && v.is_boolean()) return v.get<bool>() ? "True" : "False";
  if (v.is_number()) return v.dump();
  return typed.dump();
}

}  // namespace

void AddCallCommand(CLI::App& app) {
  CLI::App* call = app.add_subcommand("call", "Call one member by name and print its result");
  auto member = std::make_shared<std::string>();
  auto args = std::make_shared<std::vector<std::string>>();
  auto let = std::make_shared<bool>(false);
  auto as_json = std::make_shared<bool>(false);
  call->add_option("member", *member, "Member name, e.g. tklGetFullPath")->required();
  call->add_option("args", *args, "Arguments: JSON values or plain text");
  call->add_flag("--let", *let, "Call the let form of a property (new value last)");
  call->add_flag("--json", *as_json, "Print the whole answer as a batch JSON line");
  call->callback([=] {
    json request = {{"id", 1}, {"member", *member}, {"let", *let}, {"args", json::array()}};
    for (const std::string& arg : *args) request["args"].push_back(ArgumentToJson(arg));
    json answer;
    {
      LIB lib;
      answer = AnswerRequest(lib, request.dump());
    }
    const bool ok = answer.value("ok", false);
    if (*as_json) {
      std::cout << answer.dump(-1, ' ', false, json::error_handler_t::replace) << '\n';
    } else if (ok) {
      if (answer.contains("result")) std::cout << PlainText(answer["result"]) << '\n';
      if (answer.contains("byref")) {
        for (const auto& [index, value] : answer["byref"].items()) {
          std::cout << "byref[" << index << "] = " << PlainText(value) << '\n';
        }
      }
    } else {
      const json& error = answer["error"];
      std::cerr << "norvik50: error " << error.value("number", 0) << ": "
                << error.value("description", "") << '\n';
    }
    ExitCode() = ok ? 0 : 1;
  });
}

}  // namespace norvik50::cli
