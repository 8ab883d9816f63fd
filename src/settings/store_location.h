// Where each root key's database lies on this machine.
//
//  - NORVIK50_REGISTRY_DIR set: every root in that folder; HKEY_CURRENT_USER
//    a private file, the others shared for reading as below.
//  - HKEY_CURRENT_USER: $XDG_CONFIG_HOME/norvik50/ (else ~/.config/norvik50/),
//    a private file (mode 0600) in a private folder (0700).
//  - the machine-wide roots: /etc/norvik50/, readable by all and writable
//    only by the file's owner.
#ifndef NORVIK50_SRC_SETTINGS_STORE_LOCATION_H_
#define NORVIK50_SRC_SETTINGS_STORE_LOCATION_H_

#include <cstdint>
#include <optional>
#include <string>

namespace norvik50::settings {

struct StoreFile {
  std::string folder;        // the folder holding the file
  std::string path;          // the database file
  bool private_file = true;  // 0600 in a 0700 folder; else 0644 in 0755
};

// The file of `root`; nullopt for a root that has no store
// (HKEY_PERFORMANCE_DATA, unknown numbers) or when no folder can be named.
// The answer is kept per thread and valid until this thread's next call.
const std::optional<StoreFile>& StoreFileFor(int32_t root);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_STORE_LOCATION_H_
