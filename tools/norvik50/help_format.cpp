#include "help_format.h"

namespace norvik50::cli {

std::string ToolFormatter::make_usage(const CLI::App* app, std::string name) const {
  // Help asked of a subcommand itself names the subcommand alone (through
  // the parser the whole command comes already); the words before it come
  // from its parents.
  if (name != app->get_name()) return CLI::Formatter::make_usage(app, name);
  for (const CLI::App* parent = app->get_parent(); parent != nullptr;
       parent = parent->get_parent()) {
    name = parent->get_name() + " " + name;
  }
  return CLI::Formatter::make_usage(app, name);
}

}  // namespace norvik50::cli
