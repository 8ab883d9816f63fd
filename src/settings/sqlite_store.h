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
#include <set>
#include <string>
#include <unordered_map>

#include "norvik50/registry.h"
#include "settings/root_database.h"

namespace norvik50::settings {

// Where an enumeration stopped: the entry at `index` has the fold
// `fold`, in the snapshot of data version `version`. The next index
// asked for, in whatever direction, is counted from there.
struct KeyCursor {
  bool valid = false;
  uint32_t index = 0;
  std::string fold;
  uint32_t version = 0;
};

// An open key of SqliteStore.
struct KeyHandle {
  int32_t root = 0;
  // The database the handle was opened on; null for a root whose file
  // did not exist then (it is looked up again on every use).
  std::shared_ptr<RootDatabase> db;
  std::string path;  // folded names joined by "\" (UTF-8); "" for the root
  int64_t id = kRootKeyId;
  uint64_t epoch = 0;     // the database's id epoch `id` was taken in
  bool verified = false;  // `id` was read from a snapshot, not only cached
  bool gone = false;      // the key was deleted while the handle was open
  KeyCursor keys, values;
};

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
  int32_t FlushKey(RegKey key) override;
  int32_t RunAtomically(std::span<const int32_t> roots,
                        const std::function<int32_t()>& body) override;
  std::u16string TakeProblem() override;
  StoreProblem TakeStoreProblem() override;

  // Open handles, for tests that check nothing leaks.
  std::size_t open_handles() const;

 private:
  using Cursor = KeyCursor;
  using Handle = KeyHandle;
  enum class Need { kRead, kWrite };

  // The handle `key` stands for (roots included); nullptr for unknown ones.
  Handle* Resolve(RegKey key, Handle& scratch);
  // The database of `root`; 2 when it does not exist and kRead was asked.
  int32_t Database(int32_t root, Need need, std::shared_ptr<RootDatabase>& db);
  // The database a handle works on.
  int32_t Database(Handle& h, Need need, std::shared_ptr<RootDatabase>& db);
  RegKey NewHandle(Handle h);
  // Inside a transaction: the id of the handle's key, or nullopt when it
  // was deleted.
  std::optional<int64_t> LiveId(Handle& h, RootDatabase& db);
  // Runs `step(id, quick)` on the handle's key. First quick, as one
  // statement with the cached id, where `step` returns kStale unless the
  // snapshot it read vouches for what it used; then, if needed, inside a
  // read transaction with the id checked (`gone` when it was deleted).
  template <class Step>
  int32_t ReadOnKey(Handle& h, RootDatabase& db, int32_t gone, Step step);
  // Reads the `index`-th entry (sub-key or value) of `key` in fold order,
  // from the handle's `cursor` where that is nearer than the first entry.
  template <class Entry>
  int32_t Enumerate(RegKey key, Cursor Handle::*cursor, uint32_t index,
                    std::optional<Entry> (RootDatabase::*at)(int64_t, int64_t),
                    std::optional<Entry> (RootDatabase::*near)(int64_t, const std::string&, bool,
                                                               int64_t),
                    std::optional<Entry>& entry);
  // Says why a write was refused (reported once per file and reason).
  void NoteWriteRefused(const RootDatabase& db);

  // Recursive: the body of RunAtomically calls the store's operations while
  // the unit holds the store.
  mutable std::recursive_mutex mu_;
  bool in_unit_ = false;
  std::map<int32_t, std::shared_ptr<RootDatabase>> databases_;
  std::unordered_map<RegKey, Handle> handles_;
  std::unordered_map<RegKey, Handle>::node_type spare_;  // the last closed handle
  RegKey next_handle_ = 1;
  StoreProblem problem_;
  std::set<std::u16string> refusals_;  // already reported
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_SQLITE_STORE_H_
