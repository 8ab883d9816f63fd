#include "core/file_dialog_request.h"

#include "core/paths.h"

namespace norvik50 {

namespace flag = file_dialog_flags;
static_assert(kDefaultOpenFlags == 2622464 + flag::kFileMustExist);
static_assert(kDefaultSaveFlags == 2622464 + flag::kOverwritePrompt + flag::kHideReadOnly +
                                       flag::kNoReadOnlyReturn + flag::kCreatePrompt);

FileDialogRequest MakeFileDialogRequest(std::u16string_view filter, std::u16string_view title,
                                        std::u16string_view filename, int32_t flags,
                                        int32_t owner_window, std::u16string_view init_dir,
                                        bool open) {
  FileDialogRequest request;
  request.filter = filter;
  request.title = title;
  request.filename = filename;
  request.flags = flags != 0 ? flags : (open ? kDefaultOpenFlags : kDefaultSaveFlags);
  request.open = open;
  request.owner_window = owner_window;
  if (!init_dir.empty()) {
    request.initial_folder = init_dir;
  } else {
    typFileInfo info;
    if (SplitPath(filename, info)) request.initial_folder = info.lpPath;
  }
  return request;
}

}  // namespace norvik50
