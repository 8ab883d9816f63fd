// The settings store: the registry enumerations hosts pass to the tkr
// members, and the store seam those members work through.
//
// A host that keeps its settings somewhere else (or a test that wants a
// store which fails on purpose) implements RegistryStore and installs it
// with SetRegistryStore; otherwise the library uses its own store, one
// SQLite database per root key (see README "Settings store").
//
// Thread safety: the library's own store may be used from several threads;
// an injected store must be as safe as the host's use of LIB requires.
#ifndef NORVIK50_REGISTRY_H_
#define NORVIK50_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "norvik50/export.h"

namespace norvik50 {

// The predefined root keys, numbered as Windows numbers them.
enum RegistryKeys : int32_t {
  HKEY_CLASSES_ROOT = -2147483647 - 1,
  HKEY_CURRENT_USER = -2147483647,
  HKEY_LOCAL_MACHINE = -2147483646,
  HKEY_USERS = -2147483645,
  HKEY_PERFORMANCE_DATA = -2147483644,
  HKEY_CURRENT_CONFIG = -2147483643,
  HKEY_DYN_DATA = -2147483642,
  HKCU = -2147483647,
  hklm = -2147483646,
  hkcr = -2147483647 - 1,
};

// Access rights a key is opened with.
enum RegistryRights : int32_t {
  KEY_QUERY_VALUE = 1,
  KEY_SET_VALUE = 2,
  KEY_CREATE_SUB_KEY = 4,
  KEY_ENUMERATE_SUB_KEYS = 8,
  KEY_NOTIFY = 16,
  KEY_CREATE_LINK = 32,
  KEY_SYNCHRONIZE = 1048576,
  KEY_ALL_ACCESS = 63,
};

// Stored value types.
enum RegistryValueTypes : int32_t {
  REG_NONE = 0,
  REG_SZ = 1,
  REG_EXPAND_SZ = 2,
  REG_BINARY = 3,
  REG_DWORD = 4,
  REG_DWORD_LITTLE_ENDIAN = 4,
  REG_DWORD_BIG_ENDIAN = 5,
  REG_LINK = 6,
  REG_MULTI_SZ = 7,
  REG_RESOURCE_LIST = 8,
  REG_FULL_RESOURCE_DESCRIPTOR = 9,
  REG_RESOURCE_REQUIREMENTS_LIST = 10,
};

// Options and dispositions (names as published, misspelling included).
enum RegistryOptions : int32_t {
  REG_CREATE_NEW_KEY = 1,
  REG_OPENED_EXISTING_KEY = 2,
  REG_WHOLE_HIVE_VOLITLE = 1,
  REG_REFRESH_HIVE = 2,
  REG_NOTIFY_CHANGE_NAME = 1,
  REG_NOTIFY_CHANGE_ATTRIBUTES = 2,
  REG_NOTIFY_CHANGE_LAST_SET = 4,
  REG_NOTIFY_CHANGE_SECURITY = 8,
  REG_LEGAL_CHANGE_FILTER = 15,
  REG_OPTION_NON_VOLATILE = 0,
  REG_OPTION_VOLATILE = 1,
  REG_OPTION_BACKUP_RESTORE = 4,
};

// Status codes of the store operations.
enum RegistryErrorCodeConstants : int32_t {
  ERROR_SUCCESS = 0,
  ERROR_ACCESS_DENIED = 5,
  ERROR_NO_MORE_ITEMS = 259,
  ERROR_BADKEY = 1010,
  ERROR_CANTOPEN = 1011,
};
// Further codes the store returns.
inline constexpr int32_t kRegFileNotFound = 2;   // no such key or value
inline constexpr int32_t kRegMoreData = 234;     // the caller's buffer is too small
inline constexpr int32_t kRegNotSupported = 50;  // the store cannot do this

// A key handle: one of RegistryKeys, or a handle OpenKey/CreateKey gave.
using RegKey = int64_t;

// A failure a person should hear about, with the number to report it
// under: 5 when this user was refused (a machine-wide store it may read
// but not write, a file it may not read), 1011 when the store cannot be
// used (damaged, foreign, unreachable). number 0: nothing to report.
struct StoreProblem {
  int32_t number = 0;
  std::u16string description;
};

// The store seam: the registry operations the tkr members need, with
// Windows' status codes (0 success, 2 missing, 5 refused, 234 buffer too
// small, 259 no more items, 1010 bad key or name, 1011 store unusable).
//
// Names are case-insensitive and case-preserving; sub-key paths separate
// names with "\". Value data is bytes: text types (REG_SZ, REG_EXPAND_SZ,
// REG_MULTI_SZ) are UTF-8 with their terminating zero, REG_DWORD four bytes
// least significant first, everything else as given.
class NORVIK50_EXPORT RegistryStore {
 public:
  virtual ~RegistryStore();

  // Opens the existing key `sub_key` under `parent` ("" reopens parent).
  // 2 if it does not exist.
  virtual int32_t OpenKey(RegKey parent, std::u16string_view sub_key, int32_t access,
                          RegKey& key) = 0;
  // Opens `sub_key`, creating it and any missing parents. `disposition`
  // (optional) receives REG_CREATE_NEW_KEY or REG_OPENED_EXISTING_KEY.
  virtual int32_t CreateKey(RegKey parent, std::u16string_view sub_key, int32_t options,
                            int32_t access, RegKey& key, int32_t* disposition) = 0;
  // Type and data of value `name` ("" is the default value). 2 if absent;
  // 234 when the value needs more than `buffer_size` bytes in the form a
  // Windows-1252 caller receives (text: one byte per character).
  virtual int32_t QueryValue(RegKey key, std::u16string_view name, std::size_t buffer_size,
                             int32_t& type, std::string& data) = 0;
  // Stores value `name` with `type` and `data`, replacing any old one.
  virtual int32_t SetValue(RegKey key, std::u16string_view name, int32_t type,
                           std::string_view data) = 0;
  // Removes value `name`; 2 if absent.
  virtual int32_t DeleteValue(RegKey key, std::u16string_view name) = 0;
  // The index-th sub-key name in case-insensitive name order; 259 past the
  // end, 234 when the name does not fit `name_buffer` with its terminator.
  virtual int32_t EnumKey(RegKey key, uint32_t index, std::size_t name_buffer,
                          std::u16string& name) = 0;
  // The index-th value (name order), for export and administration; 259
  // past the end.
  virtual int32_t EnumValue(RegKey key, uint32_t index, std::u16string& name, int32_t& type,
                            std::string& data) = 0;
  // Deletes `sub_key` under `parent` with its values; 5 while it has
  // sub-keys, 2 if it does not exist.
  virtual int32_t DeleteKey(RegKey parent, std::u16string_view sub_key) = 0;
  // Releases a handle; closing a root is allowed and does nothing.
  virtual int32_t CloseKey(RegKey key) = 0;

  // Makes everything stored so far under the root of `key` survive a
  // power cut, as RegFlushKey does on Windows; an ordinary write already
  // survives the writing process being killed. 0 when done, also when
  // there is nothing to flush (no store file yet, or a store that writes
  // through); 1010 for an unknown handle; 1011 when the store failed.
  virtual int32_t FlushKey(RegKey key) {
    (void)key;
    return 0;
  }

  // Runs `body`, a sequence of this store's operations made by the calling
  // thread, as one unit for each root in `roots`: the changes it makes
  // under those roots are kept only when it returns 0; any other code, or
  // the store itself failing inside an operation (1011), takes back every
  // one of them, and nobody else sees any of them before they are kept. An
  // operation that merely answers a code (2, 5, 1010...) takes back only
  // what it did itself, and body decides about the rest. The roots' write
  // locks are taken first (in one fixed order, so two units never wait for
  // each other), and refused at once (5) for a root this user may not
  // write; meanwhile other threads' operations on this store wait.
  // Operations on other roots are not part of the unit. Returns body's
  // code, or the store's code when a lock could not be taken or keeping
  // the changes failed (1011, with TakeStoreProblem saying why). Each
  // root's changes are one transaction: should keeping them fail for one
  // root after another root's were kept (a disk failing between two
  // commits), those stay. A unit inside a unit is part of the outer one.
  // Stores that cannot take changes back answer kRegNotSupported without
  // calling body.
  virtual int32_t RunAtomically(std::span<const int32_t> roots,
                                const std::function<int32_t()>& body) {
    (void)roots;
    (void)body;
    return kRegNotSupported;
  }

  // A description of the last failure that a person should hear about (a
  // damaged or foreign database, a file that cannot be opened), or "" when
  // there is none. Reading it clears it.
  virtual std::u16string TakeProblem() { return {}; }
  // The same failure with its number (see StoreProblem). Reading it clears
  // it; a store that gives only descriptions reports them as 1011.
  virtual StoreProblem TakeStoreProblem() {
    std::u16string description = TakeProblem();
    return {description.empty() ? 0 : ERROR_CANTOPEN, std::move(description)};
  }
};

// Flushes the store the tkr members use, for `key` (a root or a handle):
// see RegistryStore::FlushKey. Hosts call it where a setting must survive
// a power cut (after an installer's last write, before a planned shutdown).
NORVIK50_EXPORT int32_t FlushSettings(RegKey key);

// The store the tkr members use. Never null.
NORVIK50_EXPORT std::shared_ptr<RegistryStore> CurrentRegistryStore();
// Installs `store` for the whole process; nullptr restores the library's
// own store.
NORVIK50_EXPORT void SetRegistryStore(std::shared_ptr<RegistryStore> store);

}  // namespace norvik50

#endif  // NORVIK50_REGISTRY_H_
