// LIB: paths and files.
#include "core/change_folder.h"
#include "core/file_attributes.h"
#include "core/file_stream.h"
#include "core/find_file.h"
#include "core/paths.h"
#include "core/windows_path.h"
#include "norvik50/host.h"
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

std::u16string LIB::tklGetRelativePath(std::u16string_view sPath, std::u16string_view sBasePath) {
  try {
    return RelativeWindowsPath(sPath, sBasePath);
  } catch (...) {
    return u"";  // skip style: nothing computed
  }
}

std::u16string LIB::tklGetAbsolutePath(std::u16string_view sPath, std::u16string_view sBasePath) {
  try {
    return AbsoluteWindowsPath(sPath, sBasePath);
  } catch (...) {
    return u"";
  }
}

bool LIB::tklChangeToPath(std::u16string_view sPath, std::u16string* sCurrentPath) {
  bool changed = false;
  try {
    changed = ChangeFolder(sPath);
    if (sCurrentPath != nullptr) *sCurrentPath = CurrentFolder();
  } catch (...) {
    // handler: the answer still says whether the folder changed; only the
    // report of the current folder was lost
  }
  return changed;
}

std::u16string LIB::tklFindFile(std::u16string_view sPath, std::u16string_view sPattern,
                                bool bSubFolders) {
  try {
    return FindFile(sPath, sPattern, bSubFolders);
  } catch (...) {
    return u"";
  }
}

bool LIB::tklCheckAttributes(std::u16string_view sPath, int32_t lAttributes, int32_t* lActual) {
  int32_t bits = file_attribute::kInvalid;
  try {
    bits = FileAttributes(sPath);
  } catch (...) {
    bits = file_attribute::kInvalid;
  }
  if (lActual != nullptr) *lActual = bits;
  return bits != file_attribute::kInvalid && (bits & lAttributes) == lAttributes;
}

std::u16string LIB::tklFileStream(std::u16string_view sFilename) {
  return ReadFileStream(sFilename);
}

void LIB::tklFileStream(std::u16string_view sFilename, std::u16string_view sData) {
  WriteFileStream(sFilename, sData);
}

}  // namespace norvik50
