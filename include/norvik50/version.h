// The library's version, for hosts that check what they loaded.
#ifndef NORVIK50_VERSION_H_
#define NORVIK50_VERSION_H_

#include "norvik50/export.h"

namespace norvik50 {

// "major.minor.patch" of the loaded library.
NORVIK50_EXPORT const char* Version() noexcept;

}  // namespace norvik50

#endif  // NORVIK50_VERSION_H_
