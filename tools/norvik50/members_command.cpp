// norvik50 members [PATTERN]: the members that answer by name, with their
// arguments, from the dispatch table itself.
#include <iostream>
#include <memory>

#include "commands.h"
#include "member_description.h"

namespace norvik50::cli {
namespace {

constexpr const char* kLegend =
    "ref: passed by reference (the member may write it back); [ ]: optional, = its default "
    "(without one it arrives as missing).\nDetails of one member: norvik50 call MEMBER --help";

}  // namespace

void AddMembersCommand(CLI::App& app) {
  CLI::App* members =
      app.add_subcommand("members", "List the members that answer by name, with their arguments");
  auto pattern = std::make_shared<std::string>();
  members->add_option("pattern", *pattern, "Only names containing this text (any case), e.g. tkr");
  members->footer(kLegend);
  members->callback([pattern] {
    const auto found = MatchingMembers(*pattern);
    for (const MemberInfo* member : found) std::cout << MemberSignature(*member) << '\n';
    if (found.empty()) {
      std::cerr << "norvik50: no member name contains \"" << *pattern << "\"\n";
      ExitCode() = 1;
      return;
    }
    std::cout << "\n"
              << found.size() << (found.size() == 1 ? " member form. " : " member forms. ")
              << kLegend << '\n';
    ExitCode() = 0;
  });
}

}  // namespace norvik50::cli
