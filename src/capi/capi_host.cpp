// Host settings of the C interface: the application's name and how dialogs
// are shown.
//
// The Qt forms live in libnorvik50_qt, which links Qt; this library must
// load without it. So the Qt choice opens that library at run time, from
// the folder this library was loaded from (where the build and an
// installation both put it), and calls its one C entry.
#include <dlfcn.h>

#include <filesystem>
#include <string>

#include "capi/capi_support.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"

using norvik50::Raise;
using namespace norvik50::capi;

namespace {

constexpr int32_t kErrFileNotFound = 53;
constexpr const char* kQtEntry = "norvik50_qt_install_dialogs";

std::string QtLibraryPath() {
  if (const char* named = std::getenv("NORVIK50_QT_LIBRARY"); named != nullptr && *named) {
    return named;
  }
  Dl_info self{};
  if (::dladdr(reinterpret_cast<void*>(&norvik50_set_dialogs), &self) != 0 &&
      self.dli_fname != nullptr) {
    return (std::filesystem::path(self.dli_fname).parent_path() / NORVIK50_QT_LIBRARY_FILE)
        .string();
  }
  return NORVIK50_QT_LIBRARY_FILE;
}

[[noreturn]] void QtUnavailable(const std::string& why) {
  throw norvik50::Error(kErrFileNotFound,
                        u"The Qt dialogs cannot be loaded: " + norvik50::FromUtf8(why),
                        std::u16string(norvik50::kErrorSource));
}

void InstallQt() {
  const std::string path = QtLibraryPath();
  // Never closed: the application object and the forms it creates live
  // until the process ends.
  void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    const char* why = ::dlerror();
    QtUnavailable(why != nullptr ? why : path);
  }
  using Entry = int (*)();
  auto entry = reinterpret_cast<Entry>(::dlsym(handle, kQtEntry));
  if (entry == nullptr) QtUnavailable(path + " has no " + kQtEntry);
  if (entry() != 0) QtUnavailable(path + " could not install its dialogs");
}

}  // namespace

extern "C" {

int32_t norvik50_set_dialogs(int32_t which, norvik50_error* err) {
  return Guarded(err, [&] {
    switch (which) {
      case NORVIK50_DIALOGS_HEADLESS:
        norvik50::SetUserInterface(nullptr);
        return;
      case NORVIK50_DIALOGS_QT:
        InstallQt();
        return;
      default:
        Raise(norvik50::kErrInvalidCall);
    }
  });
}

int32_t norvik50_set_host_application(const char* name, const char* title) {
  return Guarded(nullptr, [&] {
    const std::u16string app = Utf8Argument(name);
    const std::u16string caption = title == nullptr ? std::u16string() : Utf8Argument(title);
    norvik50::SetHostApplication(app, caption);
  });
}

}  // extern "C"
