// The per-user key behind tklEncryptedValue and tklDecryptedValue: 32
// random bytes in the file HKEY_CURRENT_USER.key beside the user's settings
// database, readable by the user alone (0600). Whoever holds the file can
// read every value encrypted with it, and nobody can without it, so it
// moves with the user's settings: copy it together with
// HKEY_CURRENT_USER.db.
#ifndef NORVIK50_SRC_SETTINGS_VALUE_KEY_H_
#define NORVIK50_SRC_SETTINGS_VALUE_KEY_H_

#include <array>
#include <cstddef>
#include <string>

namespace norvik50::settings {

inline constexpr std::size_t kValueKeyBytes = 32;

// Key bytes that are wiped when they go.
class ValueKey {
 public:
  ValueKey() = default;
  ~ValueKey();
  ValueKey(const ValueKey&) = delete;
  ValueKey& operator=(const ValueKey&) = delete;
  unsigned char* data() noexcept { return bytes_.data(); }
  const unsigned char* data() const noexcept { return bytes_.data(); }

 private:
  std::array<unsigned char, kValueKeyBytes> bytes_{};
};

// Starts the cryptography library once per process; every use of the key
// comes after it. Raises 75 when the system offers no random source.
void StartCrypto();

// The key file of the current user (HKEY_CURRENT_USER's store folder, so
// NORVIK50_REGISTRY_DIR and XDG_CONFIG_HOME move it along). Raises 75 when
// no folder can be named (no HOME).
std::string ValueKeyPath();

// Reads the key at `path` into `key`. A missing file is created first when
// `create` is true, race-free: two processes that create it at once agree
// on one key. The file is never changed once it exists. Raises
//  - 53 for a missing file when `create` is false;
//  - 70 for a file another user owns, that others may read or write (any
//    group or other permission bit), or that this user may not read;
//  - 75 for a file that is no regular file or not exactly 32 bytes, and
//    when the file or its folder cannot be made or read.
// Each description names the file and what to do about it.
void ReadValueKey(const std::string& path, bool create, ValueKey& key);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_VALUE_KEY_H_
