// Which store holds each root key: the local SQLite files, unless a
// settings server is named for the root.
//
// A server is named by a libpq connection string, for HKEY_LOCAL_MACHINE
// and HKEY_CURRENT_USER only: first NORVIK50_STORE_HKLM / NORVIK50_STORE_HKCU,
// else the file store.conf in the machine-wide settings folder (the folder
// of HKEY_LOCAL_MACHINE's file), whose lines read
//
//   # comment
//   HKLM = service=office
//   HKCU = postgresql://settings.office.lan/desktops
//
// (HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER are accepted as names too).
#ifndef NORVIK50_SRC_SETTINGS_STORE_CONFIG_H_
#define NORVIK50_SRC_SETTINGS_STORE_CONFIG_H_

#include <cstdint>
#include <optional>
#include <string>

namespace norvik50::settings {

struct ServerChoice {
  std::string conninfo;
  std::string source;  // the variable or file that named it
};

// The server chosen for `root`; nullopt: the local store.
std::optional<ServerChoice> ServerStoreFor(int32_t root);
// The configuration file read by ServerStoreFor ("" when no folder can be named).
std::string StoreConfigFile();
// The file of the local copy of what this user read from a server.
std::string ServerCopyFile();

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_STORE_CONFIG_H_
