#include "commands.h"

namespace norvik50::cli {

int& ExitCode() {
  static int code = 0;
  return code;
}

}  // namespace norvik50::cli
