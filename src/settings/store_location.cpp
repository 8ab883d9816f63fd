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

namespace {

std::optional<StoreFile> BuildStoreFile(int32_t root) {
  const std::u16string_view name = RootKeyName(root);
  if (name.empty() || root == HKEY_PERFORMANCE_DATA) return std::nullopt;
  const std::string file_name = ToUtf8(name) + ".db";

  StoreFile file;
  if (std::string dir = Env("NORVIK50_REGISTRY_DIR"); !dir.empty()) {
    file.folder = WithoutTrailingSlash(std::move(dir));
    // The machine-wide roots keep their nature in the one folder: readable
    // by every user who may enter it, written only by the owner.
    file.private_file = root == HKEY_CURRENT_USER;
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

}  // namespace

// Every store operation asks for its file; the answer only changes when the
// environment does, so the last answer per root is kept together with the
// variables it was built from, and comparing those is all a call costs.
const std::optional<StoreFile>& StoreFileFor(int32_t root) {
  struct Cached {
    int32_t root = 0;
    std::string registry_dir, config_home, home;
    std::optional<StoreFile> file;
    bool valid = false;
  };
  thread_local Cached cache[4];
  const char* registry_dir = std::getenv("NORVIK50_REGISTRY_DIR");
  const char* config_home = std::getenv("XDG_CONFIG_HOME");
  const char* home = std::getenv("HOME");
  auto same = [](const std::string& kept, const char* now) {
    return now == nullptr ? kept.empty() : kept == now;
  };
  Cached& slot = cache[static_cast<uint32_t>(root) % 4];
  if (slot.valid && slot.root == root && same(slot.registry_dir, registry_dir) &&
      same(slot.config_home, config_home) && same(slot.home, home)) {
    return slot.file;
  }
  slot.root = root;
  slot.registry_dir = registry_dir != nullptr ? registry_dir : "";
  slot.config_home = config_home != nullptr ? config_home : "";
  slot.home = home != nullptr ? home : "";
  slot.file = BuildStoreFile(root);
  slot.valid = true;
  return slot.file;
}

}  // namespace norvik50::settings
