// The local copy of what this user last read from (or wrote to) the
// settings server: a SQLite file beside the user's own store, private to
// the user (0600), that answers reads while the server is away. It is
// never written back to the server.
//
// Best effort: a copy that cannot be opened or written is simply not
// there (reads while the server is away then find nothing). What it is
// told is kept in memory and written in batches (at most kBatch entries
// or kBatchAge old, and when the object goes or is read from), so that a
// read from the server does not also wait for a local commit; a process
// killed meanwhile leaves the copy as of its last batch. Not thread-safe.
#ifndef NORVIK50_SRC_SETTINGS_PG_OFFLINE_COPY_H_
#define NORVIK50_SRC_SETTINGS_PG_OFFLINE_COPY_H_

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "settings/pg_read_cache.h"

namespace SQLite {
class Database;
}

namespace norvik50::settings {

class PgOfflineCopy {
 public:
  static constexpr std::size_t kBatch = 256;
  static constexpr std::chrono::milliseconds kBatchAge{1000};

  // `path` "" keeps no copy. The file is opened at its first use.
  explicit PgOfflineCopy(std::string path);
  ~PgOfflineCopy();

  void NoteKey(int32_t root, const std::string& path, bool exists);
  void NoteValue(int32_t root, const std::string& path, const std::string& fold,
                 const KnownValue& value);
  // What the copy knows: nullopt when it knows nothing of it.
  std::optional<bool> KeyExists(int32_t root, const std::string& path);
  std::optional<KnownValue> Value(int32_t root, const std::string& path, const std::string& fold);

  const std::string& path() const { return path_; }
  // Writes what is pending now.
  void Flush();

 private:
  struct Entry {
    int32_t root;
    std::string path, fold;
    bool is_value;  // else a key
    KnownValue value;
    bool exists;
  };
  SQLite::Database* Db();
  void Add(Entry entry);
  std::string path_;
  std::unique_ptr<SQLite::Database> db_;
  bool failed_ = false;  // opening failed once: not tried again
  std::vector<Entry> pending_;
  std::chrono::steady_clock::time_point oldest_;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_PG_OFFLINE_COPY_H_
