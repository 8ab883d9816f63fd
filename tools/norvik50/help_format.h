// How the command line's help reads: every usage line names the whole
// command as it is typed ("Usage: norvik50 reg query ..."), not only the
// last word of it.
#ifndef NORVIK50_TOOLS_NORVIK50_HELP_FORMAT_H_
#define NORVIK50_TOOLS_NORVIK50_HELP_FORMAT_H_

#include <CLI/CLI.hpp>
#include <string>

namespace norvik50::cli {

class ToolFormatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* app, std::string name) const override;
};

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_HELP_FORMAT_H_
