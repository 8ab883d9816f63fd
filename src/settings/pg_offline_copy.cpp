#include "settings/pg_offline_copy.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>

namespace norvik50::settings {

PgOfflineCopy::PgOfflineCopy(std::string path) : path_(std::move(path)) {}
PgOfflineCopy::~PgOfflineCopy() { Flush(); }

SQLite::Database* PgOfflineCopy::Db() {
  if (db_ || failed_ || path_.empty()) return db_.get();
  try {
    // The copy holds the user's own settings (scrambled passwords among
    // them): made private before SQLite writes a byte into it.
    std::error_code ignored;
    const auto folder = std::filesystem::path(path_).parent_path();
    if (std::filesystem::create_directories(folder, ignored)) {
      std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);
    }
    const int fd = ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
      failed_ = true;
      return nullptr;
    }
    ::close(fd);
    auto db = std::make_unique<SQLite::Database>(path_, SQLite::OPEN_READWRITE, 2000);
    db->exec(
        "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
        "CREATE TABLE IF NOT EXISTS keys(root INTEGER, path TEXT, present INTEGER,"
        " PRIMARY KEY(root, path)) WITHOUT ROWID;"
        "CREATE TABLE IF NOT EXISTS vals(root INTEGER, path TEXT, fold TEXT, present INTEGER,"
        " type INTEGER, data BLOB, PRIMARY KEY(root, path, fold)) WITHOUT ROWID;");
    db_ = std::move(db);
  } catch (const std::exception&) {
    failed_ = true;
  }
  return db_.get();
}

void PgOfflineCopy::NoteKey(int32_t root, const std::string& path, bool exists) {
  Add({root, path, {}, false, {}, exists});
}

void PgOfflineCopy::NoteValue(int32_t root, const std::string& path, const std::string& fold,
                              const KnownValue& value) {
  Add({root, path, fold, true, value, true});
}

void PgOfflineCopy::Add(Entry entry) {
  if (path_.empty() || failed_) return;
  const auto now = std::chrono::steady_clock::now();
  if (pending_.empty()) oldest_ = now;
  pending_.push_back(std::move(entry));
  if (pending_.size() >= kBatch || now - oldest_ >= kBatchAge) Flush();
}

void PgOfflineCopy::Flush() {
  if (pending_.empty()) return;
  std::vector<Entry> batch;
  batch.swap(pending_);
  SQLite::Database* db = Db();
  if (db == nullptr) return;
  try {
    SQLite::Transaction transaction(*db);
    SQLite::Statement key(*db, "INSERT OR REPLACE INTO keys VALUES(?1, ?2, ?3)");
    SQLite::Statement drop_values(*db, "DELETE FROM vals WHERE root = ?1 AND path = ?2");
    SQLite::Statement value(*db, "INSERT OR REPLACE INTO vals VALUES(?1, ?2, ?3, 1, ?4, ?5)");
    SQLite::Statement drop_value(*db,
                                 "DELETE FROM vals WHERE root = ?1 AND path = ?2 AND fold = ?3");
    auto run = [](SQLite::Statement& st) {
      st.exec();
      st.reset();
      st.clearBindings();
    };
    for (const Entry& e : batch) {
      if (!e.is_value || e.value) {
        // A stored value proves its key.
        key.bind(1, e.root);
        key.bind(2, e.path);
        key.bind(3, e.exists ? 1 : 0);
        run(key);
      }
      if (!e.is_value) {
        if (!e.exists) {
          drop_values.bind(1, e.root);
          drop_values.bind(2, e.path);
          run(drop_values);
        }
      } else if (e.value) {
        value.bind(1, e.root);
        value.bind(2, e.path);
        value.bind(3, e.fold);
        value.bind(4, e.value->type);
        value.bind(5, e.value->data.data(), static_cast<int>(e.value->data.size()));
        run(value);
      } else {
        // Known to be missing: nothing to keep, only an older value to forget.
        drop_value.bind(1, e.root);
        drop_value.bind(2, e.path);
        drop_value.bind(3, e.fold);
        run(drop_value);
      }
    }
    transaction.commit();
  } catch (const std::exception&) {
    // Best effort: the copy only serves while the server is away.
  }
}

std::optional<bool> PgOfflineCopy::KeyExists(int32_t root, const std::string& path) {
  Flush();
  SQLite::Database* db = Db();
  if (db == nullptr) return std::nullopt;
  try {
    SQLite::Statement st(*db, "SELECT present FROM keys WHERE root = ?1 AND path = ?2");
    st.bind(1, root);
    st.bind(2, path);
    if (!st.executeStep()) return std::nullopt;
    return st.getColumn(0).getInt() != 0;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

std::optional<KnownValue> PgOfflineCopy::Value(int32_t root, const std::string& path,
                                               const std::string& fold) {
  Flush();
  SQLite::Database* db = Db();
  if (db == nullptr) return std::nullopt;
  try {
    SQLite::Statement st(*db,
                         "SELECT type, data FROM vals"
                         " WHERE root = ?1 AND path = ?2 AND fold = ?3");
    st.bind(1, root);
    st.bind(2, path);
    st.bind(3, fold);
    if (!st.executeStep()) {
      if (KeyExists(root, path) == false) return KnownValue{};
      return std::nullopt;
    }
    const SQLite::Column data = st.getColumn(1);
    return KnownValue{
        CachedValue{st.getColumn(0).getInt(),
                    std::string(static_cast<const char*>(data.getBlob()), data.getBytes())}};
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace norvik50::settings
