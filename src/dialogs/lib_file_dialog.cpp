// LIB: the open and save file dialog. The member settles what the dialog
// starts with (flags, folder); the user interface shows it and honours
// the flags.
#include "core/paths.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"

namespace norvik50 {
namespace {

// Long names, the explorer look and "extension different"; opening adds
// "the file must exist", saving adds the overwrite prompt, no read-only
// box, no write-protected file and the create prompt.
constexpr int32_t kCommonFlags = 2622464;
constexpr int32_t kOpenFlags = kCommonFlags + file_dialog_flags::kFileMustExist;
constexpr int32_t kSaveFlags =
    kCommonFlags + file_dialog_flags::kOverwritePrompt + file_dialog_flags::kHideReadOnly +
    file_dialog_flags::kNoReadOnlyReturn + file_dialog_flags::kCreatePrompt;
static_assert(kOpenFlags == 2626560 && kSaveFlags == 2663430);

}  // namespace

bool LIB::tklFileDialog(std::u16string_view sFilter, std::u16string_view sDlgTitle,
                        std::u16string& sFilename, int32_t lFlags, int32_t lHWndParent,
                        std::u16string_view sInitDir, bool bOpen) {
  try {
    FileDialogRequest request;
    request.filter = sFilter;
    request.title = sDlgTitle;
    request.filename = sFilename;
    request.flags = lFlags != 0 ? lFlags : (bOpen ? kOpenFlags : kSaveFlags);
    request.open = bOpen;
    request.owner_window = lHWndParent;
    if (!sInitDir.empty()) {
      request.initial_folder = sInitDir;
    } else {
      typFileInfo info;
      if (SplitPath(sFilename, info)) request.initial_folder = info.lpPath;
    }
    std::u16string chosen = sFilename;
    if (!CurrentUserInterface().ShowFileDialog(request, chosen)) return false;
    sFilename = std::move(chosen);
    return true;
  } catch (...) {
    // A dialog that failed is a cancelled one: the caller's name stays.
    return false;
  }
}

}  // namespace norvik50
