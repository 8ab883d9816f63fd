// The registry routines behind the tkr members, written against the store
// seam. They keep the long-standing rules hosts depend on, odd ones
// included; each is explained where it is implemented.
#ifndef NORVIK50_SRC_SETTINGS_REGISTRY_ALGORITHMS_H_
#define NORVIK50_SRC_SETTINGS_REGISTRY_ALGORITHMS_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "norvik50/registry.h"
#include "norvik50/variant.h"

namespace norvik50::settings {

// Receives failures a person should hear about: (number, description,
// source). The tkr members pass one that writes to the LIB log.
using ErrorReport = std::function<void(int32_t, std::u16string_view, std::u16string_view)>;

// Size of the buffer values are read through; longer values are unreadable.
inline constexpr std::size_t kReadBufferSize = 1024;
// Size of the buffer sub-key names are enumerated through.
inline constexpr std::size_t kNameBufferSize = 255;

// The value `value_name` of key `sub_key` under `root`: text, bytes as
// byte characters, or a Long for DWORDs. When it is missing or unreadable,
// `default_value` (written back first when `auto_create`), else "". Never
// raises; unexpected failures go to `report` with source
// "LIB:tkrGetValue()".
Variant RegReadValue(RegistryStore& store, int32_t root, std::u16string_view sub_key,
                     std::u16string_view value_name, const std::optional<Variant>& default_value,
                     bool auto_create, const ErrorReport& report);

// Stores `data` as value `value_name`, creating the key when needed; the
// text "-" deletes the value instead. True when the store accepted it.
// Never raises; unexpected failures go to `report` with source
// "LIB:tkrSetValue()" and give False.
bool RegWriteValue(RegistryStore& store, int32_t root, std::u16string_view sub_key,
                   std::u16string_view value_name, const Variant& data, const ErrorReport& report);

// Deletes `sub_key`, first with all its sub-keys when `kill_all_sub_keys`.
// The store's code: 0 done, 2 missing, 5 refused (a key with sub-keys).
int32_t RegDeleteKeyTree(RegistryStore& store, RegKey root, std::u16string_view sub_key,
                         bool kill_all_sub_keys);

// The number of keys in the subtree of `sub_key`, the key itself included
// (a leaf gives 1); 0 when the key cannot be opened.
int32_t RegCountKeys(RegistryStore& store, int32_t root, std::u16string_view sub_key);

// The direct sub-key names of `sub_key` as a zero-based String array; an
// unbounded (erased) array when the key cannot be opened.
SafeArray RegListSubKeys(RegistryStore& store, int32_t root, std::u16string_view sub_key);

// Passes the store's pending problem, if any, to `report`.
void ReportStoreProblem(RegistryStore& store, const ErrorReport& report,
                        std::u16string_view source);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_REGISTRY_ALGORITHMS_H_
