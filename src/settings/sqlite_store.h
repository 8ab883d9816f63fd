// The library's own settings store: registry semantics over one SQLite
// database per root key (locations: store_location.h).
//
// Key and value names are case-insensitive and case-preserving; sub-keys
// enumerate in case-insensitive name order; a key with sub-keys cannot be
// deleted (5). Connections and statements stay open for the life of the
// object; a change of NORVIK50_REGISTRY_DIR (or of the user's folders)
// between calls is noticed and the right file opened. All operations are
// safe to call from several threads.
#ifndef NORVIK50_SRC_SETTINGS_SQLITE_STORE_H_
#define NORVIK50_SRC_SETTINGS_SQLITE_STORE_H_

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "norvik50/registry.h"
#include "settings/root_database.h"

namespace norvik50::settings {

class SqliteStore final : public RegistryStore {
 public:
  SqliteStore();
  ~SqliteStore() override;

  int32_t OpenKey(RegKey parent, std::u16string_view sub_key, int32_t access, RegKey& key) override;
  int32_t CreateKey(RegKey parent, std::u16string_view sub_key, int32_t options, int32_t access,
                    RegKey& key, int32_t* disposition) override;
  int32_t QueryValue(RegKey key, std::u16string_view name, std::size_t buffer_size, int32_t& type,
                     std::string& data) override;
  int32_t SetValue(RegKey key, std::u16string_view name, int32_t type,
                   std::string_view data) override;
  int32_t DeleteValue(RegKey key, std::u16string_view name) override;
  int32_t EnumKey(RegKey key, uint32_t index, std::size_t name_buffer,
                  std::u16string& name) override;
  int32_t EnumValue(RegKey key, uint32_t index, std::u16string& name, int32_t& type,
                    std::string& data) override;
  int32_t DeleteKey(RegKey parent, std::u16string_view sub_key) override;
  int32_t CloseKey(RegKey key) override;
  std::u16string TakeProblem() override;

  // Open handles, for tests that check nothing leaks.
  std::size_t open_handles() const;

 private:
  struct Handle {
    int32_t root = 0;
    int64_t id = 0;
    std::string path;  // folded names joined by "\" (UTF-8); "" for the root
    // Where the last enumeration stopped, so that walking the sub-keys by
    // index 0, 1, 2 ... costs one index step each instead of a scan.
    uint32_t next_index = 0;
    std::string last_fold;
  };
  enum class Need { kRead, kWrite };

  // The handle `key` stands for (roots included); nullptr for unknown ones.
  Handle* Resolve(RegKey key, Handle& scratch);
  // The database of `root`; 2 when it does not exist and kRead was asked.
  int32_t Database(int32_t root, Need need, RootDatabase*& db);
  RegKey NewHandle(Handle h);

  mutable std::mutex mu_;
  std::map<int32_t, std::unique_ptr<RootDatabase>> databases_;
  std::unordered_map<RegKey, Handle> handles_;
  RegKey next_handle_ = 1;
  std::u16string problem_;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_SQLITE_STORE_H_
