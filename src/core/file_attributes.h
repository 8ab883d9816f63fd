// The Windows attribute bits of a file or folder, as far as a Linux disk
// has them.
#ifndef NORVIK50_SRC_CORE_FILE_ATTRIBUTES_H_
#define NORVIK50_SRC_CORE_FILE_ATTRIBUTES_H_

#include <cstdint>
#include <string_view>

namespace norvik50 {

namespace file_attribute {
inline constexpr int32_t kReadOnly = 1;         // nobody may write (no write bit in the mode)
inline constexpr int32_t kHidden = 2;           // the name starts with "."
inline constexpr int32_t kDirectory = 16;       // a folder
inline constexpr int32_t kArchive = 32;         // a regular file
inline constexpr int32_t kReparsePoint = 1024;  // the name is a symbolic link
// Every bit FileAttributes can answer; the others (4 system, 8 volume,
// 64 device, 128 normal, 256 temporary, 512 sparse, 2048 compressed,
// 4096 offline, 8192 not indexed, 16384 encrypted, ...) are never set.
inline constexpr int32_t kPossible = kReadOnly | kHidden | kDirectory | kArchive | kReparsePoint;
// What a missing path answers, as the Windows call does.
inline constexpr int32_t kInvalid = -1;
}  // namespace file_attribute

// The attribute bits of `path` (a Windows path through the drive map,
// found without regard to case). A symbolic link answers for what it
// points at, plus kReparsePoint. A pipe, socket or device has neither
// kDirectory nor kArchive. kInvalid when nothing is there (also a link
// that leads nowhere, an empty path, an unmapped drive).
int32_t FileAttributes(std::u16string_view path);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_FILE_ATTRIBUTES_H_
