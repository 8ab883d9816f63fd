#include "settings/store_location.h"

#include <cstdlib>

#include "norvik50/encoding.h"
#include "norvik50/registry.h"
#include "settings/registry_names.h"

namespace norvik50::settings {
namespace {

std::string Env(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? std::string(value) : std::string();
}

std::string WithoutTrailingSlash(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

}  // namespace

std::optional<StoreFile> StoreFileFor(int32_t root) {
  const std::u16string_view name = RootKeyName(root);
  if (name.empty() || root == HKEY_PERFORMANCE_DATA) return std::nullopt;
  const std::string file_name = ToUtf8(name) + ".db";

  StoreFile file;
  if (std::string dir = Env("NORVIK50_REGISTRY_DIR"); !dir.empty()) {
    file.folder = WithoutTrailingSlash(std::move(dir));
    file.private_file = true;
  } else if (root == HKEY_CURRENT_USER) {
    std::string config = Env("XDG_CONFIG_HOME");
    if (config.empty()) {
      const std::string home = Env("HOME");
      if (home.empty()) return std::nullopt;
      config = WithoutTrailingSlash(home) + "/.config";
    }
    file.folder = WithoutTrailingSlash(std::move(config)) + "/norvik50";
    file.private_file = true;
  } else {
    file.folder = "/etc/norvik50";
    file.private_file = false;
  }
  file.path = file.folder + "/" + file_name;
  return file;
}

}  // namespace norvik50::settings
