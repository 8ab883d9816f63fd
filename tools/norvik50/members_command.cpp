// norvik50 members [PATTERN]: the members that answer by name, with their
// arguments, from the dispatch table itself.
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "commands.h"
#include "member_description.h"
#include "norvik50/encoding.h"

namespace norvik50::cli {
namespace {

constexpr const char* kLegend =
    "ref: passed by reference (the member may write it back); [ ]: optional, = its default "
    "(without one it arrives as missing).\nDetails of one member: norvik50 call MEMBER --help";

// "82 member forms of 79 names: 60 as documented, 19 designed here; 56
// names not answered." for the listed entries.
std::string NameCounts(const std::vector<const MemberInfo*>& found,
                       const std::vector<const UnavailableMember*>& unavailable) {
  std::set<std::string> names, designed;
  for (const MemberInfo* member : found) {
    const std::string name = Lower(member->name);
    names.insert(name);
    if (member->designed_here) designed.insert(name);
  }
  std::string text = std::to_string(found.size()) +
                     (found.size() == 1 ? " member form of " : " member forms of ") +
                     std::to_string(names.size()) + (names.size() == 1 ? " name: " : " names: ") +
                     std::to_string(names.size() - designed.size()) + " as documented, " +
                     std::to_string(designed.size()) + " designed here; " +
                     std::to_string(unavailable.size()) +
                     (unavailable.size() == 1 ? " name" : " names") + " not answered.";
  return text;
}

}  // namespace

void AddMembersCommand(CLI::App& app) {
  CLI::App* members =
      app.add_subcommand("members", "List the members that answer by name, with their arguments");
  auto pattern = std::make_shared<std::string>();
  members->add_option("pattern", *pattern, "Only names containing this text (any case), e.g. tkr");
  members->footer(kLegend);
  members->callback([pattern] {
    const auto found = MatchingMembers(*pattern);
    const auto unavailable = MatchingUnavailableMembers(*pattern);
    for (const MemberInfo* member : found) std::cout << MemberSignature(*member) << '\n';
    if (!unavailable.empty()) {
      std::cout << (found.empty() ? "" : "\n") << "Not answered (a call raises 438 saying why):\n";
      for (const UnavailableMember* member : unavailable) {
        std::cout << "  " << member->name << ": " << ToUtf8(member->reason) << '\n';
      }
    }
    if (found.empty() && unavailable.empty()) {
      std::cerr << "norvik50: no member name contains \"" << *pattern << "\"\n";
      ExitCode() = 1;
      return;
    }
    std::cout << "\n" << NameCounts(found, unavailable) << ' ' << kLegend << '\n';
    ExitCode() = 0;
  });
}

}  // namespace norvik50::cli
