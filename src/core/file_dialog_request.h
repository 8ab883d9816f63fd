// What the open and save dialog starts with, worked out from
// tklFileDialog's arguments: shared by the member and by the resource
// lookup's prompt for a missing library, which sits in a lower layer.
#ifndef NORVIK50_SRC_CORE_FILE_DIALOG_REQUEST_H_
#define NORVIK50_SRC_CORE_FILE_DIALOG_REQUEST_H_

#include <cstdint>
#include <string_view>

#include "norvik50/host.h"

namespace norvik50 {

// The flags when the caller gives 0: long names, the explorer look and
// "extension different", plus "the file must exist" for opening, or the
// overwrite prompt, no read-only box, no write-protected file and the
// create prompt for saving.
inline constexpr int32_t kDefaultOpenFlags = 2626560;
inline constexpr int32_t kDefaultSaveFlags = 2663430;

// The request for the arguments: `flags` 0 takes the default of `open`;
// the initial folder is `init_dir`, else the folder part of `filename`
// ("C:\Daten\" for "C:\Daten\a.txt"; "" for a bare name).
FileDialogRequest MakeFileDialogRequest(std::u16string_view filter, std::u16string_view title,
                                        std::u16string_view filename, int32_t flags,
                                        int32_t owner_window, std::u16string_view init_dir,
                                        bool open);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_FILE_DIALOG_REQUEST_H_
