// LIB: paths and files.
#include "core/paths.h"
#include "norvik50/lib.h"

namespace norvik50 {

std::u16string LIB::tklGetFullPath(std::u16string_view sPath, std::u16string_view sFile) {
  try {
    return GetFullPath(sPath, sFile);
  } catch (...) {
    return u"";  // skip style: nothing computed
  }
}

bool LIB::tklFileExists(std::u16string_view sFilename) {
  try {
    return FileExists(sFilename);
  } catch (...) {
    return false;
  }
}

int16_t LIB::tklPathExists(std::u16string_view sPath) { return PathIsDirectory(sPath); }

bool LIB::tklSeparateFile(std::u16string_view sFullName, typFileInfo& tFileInfo) {
  typFileInfo info;
  bool split = false;
  try {
    split = SplitPath(sFullName, info);
  } catch (...) {
    split = false;  // the fields keep what was set before the failure
  }
  tFileInfo = std::move(info);
  return split;
}

}  // namespace norvik50
