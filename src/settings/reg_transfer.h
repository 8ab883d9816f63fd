// Moving keys between the store and .reg files.
#ifndef NORVIK50_SRC_SETTINGS_REG_TRANSFER_H_
#define NORVIK50_SRC_SETTINGS_REG_TRANSFER_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "norvik50/registry.h"
#include "settings/reg_file.h"

namespace norvik50::settings {

// The key `path` under `root` with its values and whole subtree, keys in
// case-insensitive name order, as a RegFile. Returns the store's code (2
// for a missing key).
int32_t ExportKeys(RegistryStore& store, int32_t root, std::u16string_view path, RegFile& out);

// Applies `file` to the store in order (deletions, keys, values) as one
// unit (RegistryStore::RunAtomically): all of it or, when anything fails,
// nothing. Returns 0, or the first failing store code with `failed_key`
// naming the key ("" when a root's store could not be taken for writing;
// the store's problem then names it); kRegNotSupported for a store that
// cannot take changes back.
int32_t ImportKeys(RegistryStore& store, const RegFile& file, std::u16string& failed_key);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_REG_TRANSFER_H_
