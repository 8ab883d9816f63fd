#include <string>
#include <vector>

#include "commands.h"

namespace norvik50::cli {

std::string UnknownCommand(const CLI::App& app, const std::vector<std::string>& args) {
  const CLI::App* current = &app;
  std::string path = current->get_name();
  for (std::size_t i = 1; i < args.size(); ++i) {
    const std::string& word = args[i];
    // An option ends the walk: what follows belongs to it or to the parser.
    if (word.empty() || word.front() == '-') return {};
    const auto subcommands = current->get_subcommands([](const CLI::App*) { return true; });
    if (subcommands.empty()) return {};
    const CLI::App* next = nullptr;
    for (const CLI::App* sub : subcommands) {
      if (sub->check_name(word)) next = sub;
    }
    if (next == nullptr) {
      std::string known;
      for (const CLI::App* sub : subcommands) known += (known.empty() ? "" : ", ") + sub->get_name();
      return path + ": unknown command '" + word + "' (commands: " + known + "; " + path +
             " --help)";
    }
    current = next;
    path += " " + next->get_name();
  }
  return {};
}

}  // namespace norvik50::cli
