#include "settings/store_config.h"

#include <cstdlib>
#include <fstream>

#include "norvik50/encoding.h"
#include "norvik50/registry.h"
#include "settings/registry_names.h"
#include "settings/store_location.h"

namespace norvik50::settings {
namespace {

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  const auto last = text.find_last_not_of(" \t\r");
  return text.substr(first, last - first + 1);
}

std::optional<std::string> FromFile(const std::string& file, int32_t root) {
  std::ifstream in(file);
  std::string line;
  while (std::getline(in, line)) {
    line = Trimmed(line);
    if (line.empty() || line[0] == '#') continue;
    const auto equals = line.find('=');
    if (equals == std::string::npos) continue;
    const auto named = ParseRootKeyName(FromUtf8(Trimmed(line.substr(0, equals))));
    if (named && *named == root) return Trimmed(line.substr(equals + 1));
  }
  return std::nullopt;
}

}  // namespace

std::string StoreConfigFile() {
  const auto& machine = StoreFileFor(HKEY_LOCAL_MACHINE);
  return machine ? machine->folder + "/store.conf" : std::string();
}

std::string ServerCopyFile() {
  const auto& user = StoreFileFor(HKEY_CURRENT_USER);
  return user ? user->folder + "/server-copy.db" : std::string();
}

std::optional<ServerChoice> ServerStoreFor(int32_t root) {
  const char* variable = root == HKEY_LOCAL_MACHINE  ? "NORVIK50_STORE_HKLM"
                         : root == HKEY_CURRENT_USER ? "NORVIK50_STORE_HKCU"
                                                     : nullptr;
  if (variable == nullptr) return std::nullopt;
  if (const char* value = std::getenv(variable); value != nullptr && *value != '\0') {
    return ServerChoice{value, variable};
  }
  const std::string file = StoreConfigFile();
  if (file.empty()) return std::nullopt;
  const auto conninfo = FromFile(file, root);
  if (!conninfo || conninfo->empty()) return std::nullopt;
  return ServerChoice{*conninfo, file};
}

}  // namespace norvik50::settings
