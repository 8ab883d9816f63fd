#include "core/change_folder.h"

#include <unistd.h>

#include <optional>
#include <string>

#include "core/path_lookup.h"

namespace norvik50 {

bool ChangeFolder(std::u16string_view path) {
  PathStatus status;
  const std::optional<std::string> disk = MapWindowsPath(path, &status);
  return disk && status.directory && ::chdir(disk->c_str()) == 0;
}

}  // namespace norvik50
