// typFileInfo: the record that tklSeparateFile fills.
#ifndef NORVIK50_FILE_INFO_H_
#define NORVIK50_FILE_INFO_H_

#include <string>

namespace norvik50 {

struct typFileInfo {
  std::u16string lpDrive;     // drive letter in upper case, without ":"
  std::u16string lpPath;      // up to and including the last "\", or ""
  std::u16string lpFilename;  // file name without its extension
  std::u16string lpExt;       // text after the last "." of the name, or ""
  std::u16string lpFullName;  // the whole path as given
  friend bool operator==(const typFileInfo&, const typFileInfo&) = default;
};

}  // namespace norvik50

#endif  // NORVIK50_FILE_INFO_H_
