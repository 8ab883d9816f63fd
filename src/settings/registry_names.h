// Names in the settings store: root keys, sub-key paths, and the case fold
// that makes key and value names case-insensitive while they keep the case
// they were written with.
#ifndef NORVIK50_SRC_SETTINGS_REGISTRY_NAMES_H_
#define NORVIK50_SRC_SETTINGS_REGISTRY_NAMES_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/name_fold.h"

namespace norvik50::settings {

// Longest key name (one path component) and value name, in characters.
inline constexpr std::size_t kMaxKeyNameLength = 255;
inline constexpr std::size_t kMaxValueNameLength = 16383;
// Deepest key below a root.
inline constexpr std::size_t kMaxKeyDepth = 512;

// The folded form of a name: equal for names that differ only in case
// (shared with the path lookup, which folds file names the same way).
using norvik50::FoldName;
// ToUtf8(FoldName(name)), the form the store keys names by.
std::string FoldedUtf8(std::u16string_view name);

// Splits a sub-key path at "\" into its names. One trailing "\" is allowed
// ("Software\" is "Software"); "" is no names at all. nullopt for an empty
// name inside the path ("a\\b", "\a") or a name longer than
// kMaxKeyNameLength.
std::optional<std::vector<std::u16string>> SplitKeyPath(std::u16string_view path);

// The folded form of a whole sub-key path as the store keys it: the folded
// names in UTF-8 joined by "\" ("" for no names). nullopt where
// SplitKeyPath gives nullopt.
std::optional<std::string> FoldedKeyPath(std::u16string_view path);

// Whether `name` may name a value.
inline bool IsValidValueName(std::u16string_view name) {
  return name.size() <= kMaxValueNameLength;
}

// "HKEY_CURRENT_USER" for HKEY_CURRENT_USER and so on; "" for other numbers.
std::u16string_view RootKeyName(int32_t root);
// The root a name stands for, long or short, any case ("HKLM",
// "hkey_local_machine"); nullopt for anything else.
std::optional<int32_t> ParseRootKeyName(std::u16string_view name);
// Splits "HKCU\Software\X" into the root and "Software\X"; nullopt when the
// text does not start with a root name.
std::optional<std::pair<int32_t, std::u16string>> SplitFullKeyName(std::u16string_view text);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_REGISTRY_NAMES_H_
