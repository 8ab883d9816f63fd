// The folder the per-user store lives in, shared by the files kept there.
#ifndef NORVIK50_SRC_SETTINGS_STORE_FOLDER_H_
#define NORVIK50_SRC_SETTINGS_STORE_FOLDER_H_

#include <sys/types.h>

#include <string>

namespace norvik50::settings {

// Creates `folder` and its missing parents; the last one gets `mode`.
// True when the folder exists afterwards (also when it did before).
bool MakeFolder(const std::string& folder, mode_t mode);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_STORE_FOLDER_H_
