// Finding a Windows path on a case-sensitive disk. Windows finds
// "C:\PROG\RES_DE.DLL" when the disk holds "Prog\Res_DE.dll"; hosts store
// paths in whatever case they were typed, so the mapped Linux path is looked
// up the same way: the exact spelling first, and only when that does not
// exist, each component matched without regard to case.
#ifndef NORVIK50_SRC_CORE_PATH_LOOKUP_H_
#define NORVIK50_SRC_CORE_PATH_LOOKUP_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace norvik50 {

// What the file system said about the path that was found.
struct PathStatus {
  bool exists = false;
  bool directory = false;
};

// The Linux path for a Windows-style path, as ToLinuxPath (norvik50/host.h)
// answers, with `status` (when given) filled from the one look-up of the
// path that the resolution made anyway, so that a file test costs no second
// call. nullopt when the path names no file at all (empty, NUL inside, an
// unmapped drive, a UNC path).
std::optional<std::string> MapWindowsPath(std::u16string_view windows_path, PathStatus* status);

// `path` as it exists on disk: unchanged when it exists as spelt;
// otherwise each component after the first `fixed` bytes (which are taken as
// they stand) becomes the directory entry whose name equals it apart from
// case (FoldName), the exact name winning over names that differ only in
// case, and the smallest name (bytewise) among several that differ only in
// case. From the first component that matches nothing on, the rest keeps the
// spelling given, so a file about to be created gets the found folder and
// its own name. "", "." and ".." components stay as they are.
std::string FindPathIgnoringCase(std::string path, std::size_t fixed, PathStatus* status);

// The entry of the folder `folder` whose name equals `name` apart from case
// (the smallest such name when there are several), or nullopt.
std::optional<std::string> FindEntryIgnoringCase(const std::string& folder, std::string_view name);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_PATH_LOOKUP_H_
