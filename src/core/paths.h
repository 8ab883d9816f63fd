// Joining and splitting Windows-style paths and testing the file system.
// The text rules are Windows' ("\" separates, "X:" names a drive); the file
// tests map the path to Linux through ToLinuxPath (norvik50/host.h).
#ifndef NORVIK50_SRC_CORE_PATHS_H_
#define NORVIK50_SRC_CORE_PATHS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "norvik50/file_info.h"

namespace norvik50 {

// sPath + "\" + sFile with exactly one "\" at the joint: a missing "\" is
// added to sPath (so "" becomes "\"), one leading "\" of sFile is dropped.
std::u16string GetFullPath(std::u16string_view path, std::u16string_view file);

// True when `name` is an existing file; False for folders, missing files and
// names that cannot be mapped.
bool FileExists(std::u16string_view name);

// The folder attribute (16) when `path` is an existing folder, else 0.
inline constexpr int16_t kFolderAttribute = 16;
int16_t PathIsDirectory(std::u16string_view path);

// Splits `full_name` into typFileInfo. The drive is the path's own letter,
// or else the current folder's. Returns false only if splitting failed.
bool SplitPath(std::u16string_view full_name, typFileInfo& info);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_PATHS_H_
