// Changing the process's current folder by a Windows path.
#ifndef NORVIK50_SRC_CORE_CHANGE_FOLDER_H_
#define NORVIK50_SRC_CORE_CHANGE_FOLDER_H_

#include <string_view>

namespace norvik50 {

// Makes the folder `path` (a Windows path through the drive map, found
// without regard to case; relative to the current folder when it has no
// root; "C:" is the drive's root) the process's current folder, drive
// included: CurrentFolder (norvik50/host.h) answers it from then on. False,
// with the current folder unchanged, when `path` is empty or names no
// folder that may be entered. The current folder belongs to the whole
// process, so every thread sees the change.
bool ChangeFolder(std::u16string_view path);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_CHANGE_FOLDER_H_
