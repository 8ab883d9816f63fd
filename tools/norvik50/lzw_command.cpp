// Placeholder until the codec's command lands.
#include "commands.h"

namespace norvik50::cli {

void AddLzwCommand(CLI::App&) {}

}  // namespace norvik50::cli
