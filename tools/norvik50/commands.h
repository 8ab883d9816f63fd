// The subcommands of the norvik50 command line, one file each.
#ifndef NORVIK50_TOOLS_NORVIK50_COMMANDS_H_
#define NORVIK50_TOOLS_NORVIK50_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace norvik50::cli {

// Each adds its subcommand to `app`; the subcommand's callback runs it and
// sets the process exit code through ExitCode().
void AddBatchCommand(CLI::App& app);    // batch_command.cpp
void AddCallCommand(CLI::App& app);     // call_command.cpp
void AddDemoCommand(CLI::App& app);     // demo_command.cpp
void AddLzwCommand(CLI::App& app);      // lzw_command.cpp
void AddMembersCommand(CLI::App& app);  // members_command.cpp
void AddRegCommand(CLI::App& app);      // reg_command.cpp
void AddResCommand(CLI::App& app);      // res_command.cpp
void AddStoreCommand(CLI::App& app);    // store_command.cpp

// The Windows-style switches of `reg` (/v, /ve, /t, /d, /f, /s, /y, ...)
// as the options the parser knows; every other argument, such as an
// absolute path "/tmp/x.reg", passes unchanged. args[0] is the program.
std::vector<std::string> TranslateRegSwitches(std::vector<std::string> args);

// "" when every word before the first option names a command of `app`
// or one of its subcommands; otherwise the message for the first that
// does not ("norvik50: unknown command 'x' (commands: ...)"). The parser
// itself would only say that a subcommand is required. args[0] is the
// program.
std::string UnknownCommand(const CLI::App& app, const std::vector<std::string>& args);

// The exit code the chosen subcommand wants (0 unless it set one).
int& ExitCode();

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_COMMANDS_H_
