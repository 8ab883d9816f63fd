#include "core/file_attributes.h"

#include <sys/stat.h>

#include <optional>
#include <string>

#include "core/path_lookup.h"
#include "core/windows_path.h"

namespace norvik50 {

int32_t FileAttributes(std::u16string_view path) {
  const std::optional<std::string> disk = MapWindowsPath(path, nullptr);
  if (!disk) return file_attribute::kInvalid;
  struct stat target {};
  if (::stat(disk->c_str(), &target) != 0) return file_attribute::kInvalid;
  int32_t bits = 0;
  // Windows has one read-only flag for everybody; the nearest reading of a
  // mode is "no one may write", since any write bit lets someone change it.
  if ((target.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) bits |= file_attribute::kReadOnly;
  // The name is read from the path's text, after "." and ".." are resolved:
  // "C:\App\.." is the folder C:\, not a hidden name.
  if (LastPathName(AbsoluteWindowsPath(path)).starts_with(u'.')) bits |= file_attribute::kHidden;
  if (S_ISDIR(target.st_mode)) bits |= file_attribute::kDirectory;
  if (S_ISREG(target.st_mode)) bits |= file_attribute::kArchive;
  struct stat link {};
  if (::lstat(disk->c_str(), &link) == 0 && S_ISLNK(link.st_mode)) {
    bits |= file_attribute::kReparsePoint;
  }
  return bits;
}

}  // namespace norvik50
