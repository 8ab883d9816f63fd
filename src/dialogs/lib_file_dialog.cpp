// LIB: the open and save file dialog. The member settles what the dialog
// starts with (flags, folder); the user interface shows it and honours
// the flags.
#include "core/file_dialog_request.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "resources/language_selection.h"

namespace norvik50 {

bool LIB::tklFileDialog(std::u16string_view sFilter, std::u16string_view sDlgTitle,
                        std::u16string& sFilename, int32_t lFlags, int32_t lHWndParent,
                        std::u16string_view sInitDir, bool bOpen) {
  try {
    FileDialogRequest request =
        MakeFileDialogRequest(sFilter, sDlgTitle, sFilename, lFlags, lHWndParent, sInitDir, bOpen);
    // The toolkit's dialog speaks the language of the library's forms.
    request.language = StoredLanguage(*this);
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
