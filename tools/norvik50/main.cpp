// norvik50: the library from the command line.
//   norvik50 demo                 a short tour of what the library does
//   norvik50 batch                JSON lines over the dispatch (stdin -> stdout)
//   norvik50 call MEMBER ARG...   one call by name (--help: its arguments)
//   norvik50 members [PATTERN]    the members that answer by name
//   norvik50 lzw deflate|inflate  the LZW codec on files or stdin/stdout
//   norvik50 reg query|add|...    the settings store, .reg import and export
//   norvik50 res list|string|get  a look into a Windows resource library
//   norvik50 store [init CONN]    which store holds each root; prepare a server
#include <CLI/CLI.hpp>
#include <iostream>

#include "commands.h"
#include "help_format.h"

int main(int argc, char** argv) {
  CLI::App app{"norvik50: text, numbers, settings and resources for business applications",
               "norvik50"};
  app.set_version_flag("--version", std::string("norvik50 ") + NORVIK50_VERSION);
  app.require_subcommand(1);
  // Set before the subcommands are added: each takes its parent's.
  app.formatter(std::make_shared<norvik50::cli::ToolFormatter>());
  norvik50::cli::AddDemoCommand(app);
  norvik50::cli::AddBatchCommand(app);
  norvik50::cli::AddCallCommand(app);
  norvik50::cli::AddMembersCommand(app);
  norvik50::cli::AddLzwCommand(app);
  norvik50::cli::AddRegCommand(app);
  norvik50::cli::AddResCommand(app);
  norvik50::cli::AddStoreCommand(app);
  std::vector<std::string> args =
      norvik50::cli::TranslateRegSwitches(std::vector<std::string>(argv, argv + argc));
  if (const std::string unknown = norvik50::cli::UnknownCommand(app, args); !unknown.empty()) {
    std::cerr << unknown << '\n';
    return 2;
  }
  // CLI11 takes the arguments after the program name, last one first.
  std::vector<std::string> reversed(args.rbegin(), args.rend() - 1);
  try {
    app.parse(reversed);
  } catch (const CLI::ParseError& e) {
    // Help and version end well; any other mistake on the command line is
    // exit code 2, whatever the parser's own number for it.
    return app.exit(e) == 0 ? 0 : 2;
  }
  return norvik50::cli::ExitCode();
}
