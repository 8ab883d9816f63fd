#include <iostream>

#include "batch.h"
#include "commands.h"
#include "dialog_choice.h"

namespace norvik50::cli {

void AddBatchCommand(CLI::App& app) {
  CLI::App* batch = app.add_subcommand(
      "batch", "Answer JSON requests, one per line on stdin, one answer per line on stdout");
  const auto headless = AddHeadlessFlag(*batch);
  batch->callback([headless] {
    ChooseDialogs(*headless);
    std::ios::sync_with_stdio(false);
    RunBatch(std::cin, std::cout);
    // Failed requests are answered in the stream; the batch itself succeeded.
    ExitCode() = 0;
  });
}

}  // namespace norvik50::cli
