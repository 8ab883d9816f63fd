// Finding a file by a name pattern in a folder and, when asked, in the
// folders below it, on the disk through the drive map.
#ifndef NORVIK50_SRC_CORE_FIND_FILE_H_
#define NORVIK50_SRC_CORE_FIND_FILE_H_

#include <string>
#include <string_view>

namespace norvik50 {

// The full Windows path of the first file in `folder` whose name matches
// `pattern` (NamePattern: "*" and "?" as the Windows directory search reads
// them, without case); "" when there is none. `folder` is read as
// AbsoluteWindowsPath reads it (empty: the current folder) and found on the
// disk without regard to case; the result starts with it as
// AbsoluteWindowsPath writes it and goes on with the names below it as the
// disk spells them. Order, the same on every run: the folder's own
// files in name order (without case, then by their bytes), and with
// `sub_folders` then each sub-folder in that order, searched the same way.
// Only files count (a symbolic link to a file too); links to folders are
// not followed, so no tree is searched twice or forever. Names that are not
// UTF-8 and folders that cannot be read are passed over. A pattern with a
// separator matches nothing.
std::u16string FindFile(std::u16string_view folder, std::u16string_view pattern, bool sub_folders);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_FIND_FILE_H_
