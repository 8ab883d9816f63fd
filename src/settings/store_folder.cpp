#include "settings/store_folder.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

namespace norvik50::settings {

bool MakeFolder(const std::string& folder, mode_t mode) {
  std::error_code ec;
  const std::filesystem::path p(folder);
  if (std::filesystem::is_directory(p, ec)) return true;
  if (p.has_parent_path() && p.parent_path() != p) {
    std::filesystem::create_directories(p.parent_path(), ec);
  }
  return ::mkdir(folder.c_str(), mode) == 0 || errno == EEXIST;
}

}  // namespace norvik50::settings
