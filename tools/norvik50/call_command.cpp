#include <iostream>
#include <string>
#include <vector>

#include "batch.h"
#include "commands.h"
#include "dialog_choice.h"
#include "json_line.h"
#include "json_value.h"
#include "member_description.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

// An argument that is valid JSON is read as a typed value (123, true,
// {"vt":"Integer","v":3}, "\"quoted\""); anything else is plain text, so
// paths and words need no quoting.
json ArgumentToJson(const std::string& arg) {
  std::string why;
  if (auto parsed = ReadJsonLine(arg, why)) return std::move(*parsed);
  return json(Utf16ToWireText(FromUtf8(arg)));
}

// A scalar result as a script wants it: text as it stands, numbers plainly.
std::string PlainText(const json& typed) {
  const std::string vt = typed.value("vt", "");
  if (vt == "Empty") return "";
  if (vt == "Null") return "Null";
  const json& v = typed.contains("v") ? typed["v"] : json(nullptr);
  if (v.is_string()) return ToUtf8(WireTextToUtf16(v.get<std::string>()));
  if (vt == "Boolean" && v.is_boolean()) return v.get<bool>() ? "True" : "False";
  if (v.is_number()) return v.dump();
  return WriteJsonLine(typed);
}

// Every form of `name` (a property's get and let), or error 438 as a call
// would answer.
int ShowMemberHelp(const std::string& name) {
  bool shown = false;
  for (const MemberKind kind :
       {MemberKind::kMethod, MemberKind::kPropertyGet, MemberKind::kPropertyLet}) {
    if (const MemberInfo* info = Members().Find(name, kind)) {
      std::cout << (shown ? "\n" : "") << MemberDetails(*info);
      shown = true;
    }
  }
  if (!shown) {
    if (const UnavailableMember* out = FindUnavailableMember(name)) {
      std::cerr << "norvik50: error 438: " << out->name << ": " << ToUtf8(out->reason) << '\n';
    } else {
      std::cerr << "norvik50: error 438: no member named " << name
                << " (norvik50 members lists them)\n";
    }
    return 1;
  }
  return 0;
}

}  // namespace

void AddCallCommand(CLI::App& app) {
  CLI::App* call = app.add_subcommand("call", "Call one member by name and print its result");
  auto member = std::make_shared<std::string>();
  auto args = std::make_shared<std::vector<std::string>>();
  auto let = std::make_shared<bool>(false);
  auto as_json = std::make_shared<bool>(false);
  auto help = std::make_shared<bool>(false);
  // --help after a member name describes that member, so it is ours.
  call->set_help_flag();
  call->add_flag("-h,--help", *help, "This help; after MEMBER, that member's arguments");
  call->add_option("MEMBER", *member, "Member name, e.g. tklGetFullPath");
  call->add_option("ARG", *args, "Arguments: JSON values or plain text");
  call->add_flag("--let", *let, "Call the let form of a property (new value last)");
  call->add_flag("--json", *as_json, "Print the whole answer as a batch JSON line");
  const auto headless = AddHeadlessFlag(*call);
  call->footer("Arguments of a member: norvik50 call MEMBER --help; all members: norvik50 members");
  call->callback([=] {
    if (*help && member->empty()) {
      std::cout << call->help();
      ExitCode() = 0;
      return;
    }
    if (*help) {
      ExitCode() = ShowMemberHelp(*member);
      return;
    }
    if (member->empty()) {
      std::cerr << call->help() << "norvik50 call: MEMBER is required\n";
      ExitCode() = 2;
      return;
    }
    json request = {{"id", 1}, {"member", *member}, {"let", *let}, {"args", json::array()}};
    for (const std::string& arg : *args) request["args"].push_back(ArgumentToJson(arg));
    json answer;
    ChooseDialogs(*headless);
    {
      LIB lib;
      answer = AnswerRequest(lib, WriteJsonLine(request));
    }
    const bool ok = answer.value("ok", false);
    if (*as_json) {
      std::cout << WriteJsonLine(answer) << '\n';
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
                << ToUtf8(WireTextToUtf16(error.value("description", ""))) << '\n';
    }
    ExitCode() = ok ? 0 : 1;
  });
}

}  // namespace norvik50::cli
