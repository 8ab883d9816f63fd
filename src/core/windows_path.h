// Windows paths read by their text alone, as the shell's path functions read
// them: a root (a drive "C:" or a share "\\server\share"), names separated by
// "\" or "/", "." and ".." resolved and never above the root, names compared
// without case. Nothing here touches the disk; only a path without a root
// is read from the process's current folder.
#ifndef NORVIK50_SRC_CORE_WINDOWS_PATH_H_
#define NORVIK50_SRC_CORE_WINDOWS_PATH_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace norvik50 {

// Appends the names of `rest` (the part of a path below its root) to `out`,
// each followed by "\": repeated separators count once, "." is dropped,
// ".." takes back the name before it but never cuts into the first `floor`
// units of `out` (the root), a name ending in one dot loses it, and the name
// the path ends in loses its trailing dots and spaces ("a.txt. " is "a.txt",
// "a. \." is "a"; a separator after it keeps them). Returns true when
// `rest` ends with a separator, i.e. names a folder.
bool AppendNormalizedNames(std::u16string& out, std::size_t floor, std::u16string_view rest);

// The absolute, normalized form of `path`: a drive or share path as it
// stands, a path starting with "\" on the drive of `base`, any other
// relative path below the folder `base`. An empty `base` is the current
// folder (CurrentFolder in norvik50/host.h), a relative one is read from
// it. "C:x" is "C:\x" (each drive's current folder is its root, as for the
// drive map). A path starting with "/" is a Linux path, given the drive the
// drive map gives it ("/tmp/x" is "Z:\tmp\x"); one no drive covers is
// returned as it stands. Separators become "\"; a trailing separator stays.
// "" for an empty `path`.
std::u16string AbsoluteWindowsPath(std::u16string_view path, std::u16string_view base = u"");

// `path` as seen from the folder `base`: ".\" and the names below `base`,
// or as many "..\" as lead up to the folder both share and the names from
// there ("..\b\x.txt"); "." when `path` is `base` itself. Both are made
// absolute first, as AbsoluteWindowsPath reads them; names and roots
// compare without case and keep the spelling of `path`. A path on another
// drive or share (or a Linux path no drive covers) cannot be reached from
// `base` and comes back absolute. A trailing separator of `path` stays.
// "" for an empty `path`.
std::u16string RelativeWindowsPath(std::u16string_view path, std::u16string_view base = u"");

// The last name of a Windows path, "" for a root ("C:\", "\\srv\share").
std::u16string_view LastPathName(std::u16string_view absolute_path);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_WINDOWS_PATH_H_
