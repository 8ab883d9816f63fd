// One root key's SQLite database: the connection and its prepared
// statements, kept for the life of the process, and the rules that make it
// safe to share between processes.
//
// Every store operation runs as one transaction (a write takes the write
// lock at its start, so two writers never deadlock on an upgrade), waits
// while another process holds the lock, and retries when SQLite still says
// busy. Nothing is cached across operations except the connection and the
// statements, so a change another process commits is seen by the next
// operation. Writes are committed in WAL mode: a process killed at any
// moment loses nothing it was told was stored.
#ifndef NORVIK50_SRC_SETTINGS_ROOT_DATABASE_H_
#define NORVIK50_SRC_SETTINGS_ROOT_DATABASE_H_

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "settings/store_location.h"

namespace norvik50::settings {

// The id of the root key's own row.
inline constexpr int64_t kRootKeyId = 1;

struct StoredValue {
  std::string name;  // as written (UTF-8)
  int32_t type = 0;
  std::string data;
};

struct ChildKey {
  std::string name;  // as written (UTF-8)
  std::string fold;  // folded (UTF-8), the enumeration order
};

class RootDatabase {
 public:
  // Opens the database of `file`; with `create`, a missing file (and its
  // folder) is created with the file's mode. Returns 0; 2 when the file is
  // missing and not to be created; 5 when it cannot be created; 1011 when
  // it is damaged, belongs to something else or cannot be opened, with
  // `problem` saying so (such a file is never written to).
  static int32_t Open(const StoreFile& file, bool create, std::unique_ptr<RootDatabase>& out,
                      std::u16string& problem);
  ~RootDatabase();

  const std::string& path() const noexcept { return file_.path; }
  // False when this process may only read the file (not its owner, or the
  // owner's write permission is off).
  bool writable() const noexcept { return writable_; }

  // Runs `body` as one read or one write transaction and returns its code.
  // Busy databases are waited for and retried; SQLite failures become 5
  // (read-only, permission) or 1011 with `problem` set.
  int32_t Read(const std::function<int32_t()>& body, std::u16string& problem);
  int32_t Write(const std::function<int32_t()>& body, std::u16string& problem);

  // The statements; valid only inside Read or Write.
  std::optional<int64_t> FindKeyByPath(const std::string& folded_path);
  std::optional<int64_t> FindChild(int64_t parent, const std::string& fold);
  int64_t InsertKey(int64_t parent, const std::string& name, const std::string& fold,
                    const std::string& folded_path);
  bool KeyExists(int64_t id);
  bool HasChildren(int64_t id);
  std::optional<StoredValue> GetValue(int64_t key, const std::string& fold);
  // False when key `key` no longer exists.
  bool PutValue(int64_t key, const std::string& name, const std::string& fold, int32_t type,
                const std::string& data);
  // False when there was no such value.
  bool RemoveValue(int64_t key, const std::string& fold);
  std::optional<ChildKey> ChildAt(int64_t parent, int64_t index);
  std::optional<ChildKey> ChildAfter(int64_t parent, const std::string& fold);
  std::optional<StoredValue> ValueAt(int64_t key, int64_t index);
  void RemoveKey(int64_t id);

 private:
  RootDatabase(StoreFile file, bool writable);
  int32_t Initialise(std::u16string& problem);
  int32_t Run(bool write, const std::function<int32_t()>& body, std::u16string& problem);
  std::u16string Describe(const std::string& what) const;

  StoreFile file_;
  bool writable_;
  std::unique_ptr<SQLite::Database> db_;
  struct Statements;
  std::unique_ptr<Statements> st_;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_ROOT_DATABASE_H_
