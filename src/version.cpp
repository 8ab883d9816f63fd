#include "norvik50/version.h"

namespace norvik50 {

const char* Version() noexcept { return NORVIK50_VERSION; }

}  // namespace norvik50
