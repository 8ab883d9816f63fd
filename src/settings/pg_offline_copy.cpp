#include "settings/pg_offline_copy.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>

namespace norvik50::settings {

PgOfflineCopy::PgOfflineCopy(std::string path) : path_(std::move(path)) {}
PgOfflineCopy::~PgOfflineCopy() = default;

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
  SQLite::Database* db = Db();
  if (db == nullptr) return;
  try {
    SQLite::Statement st(*db, "INSERT OR REPLACE INTO keys VALUES(?1, ?2, ?3)");
    st.bind(1, root);
    st.bind(2, path);
    st.bind(3, exists ? 1 : 0);
    st.exec();
    if (!exists) {
      SQLite::Statement gone(*db, "DELETE FROM vals WHERE root = ?1 AND path = ?2");
      gone.bind(1, root);
      gone.bind(2, path);
      gone.exec();
    }
  } catch (const std::exception&) {
    // Best effort: the copy only serves while the server is away.
  }
}

void PgOfflineCopy::NoteValue(int32_t root, const std::string& path, const std::string& fold,
                              const KnownValue& value) {
  SQLite::Database* db = Db();
  if (db == nullptr) return;
  try {
    SQLite::Statement st(*db, "INSERT OR REPLACE INTO vals VALUES(?1, ?2, ?3, ?4, ?5, ?6)");
    st.bind(1, root);
    st.bind(2, path);
    st.bind(3, fold);
    st.bind(4, value ? 1 : 0);
    st.bind(5, value ? value->type : 0);
    if (value) {
      st.bind(6, value->data.data(), static_cast<int>(value->data.size()));
    } else {
      st.bind(6);
    }
    st.exec();
    if (value) {
      SQLite::Statement key(*db, "INSERT OR REPLACE INTO keys VALUES(?1, ?2, 1)");
      key.bind(1, root);
      key.bind(2, path);
      key.exec();
    }
  } catch (const std::exception&) {
  }
}

std::optional<bool> PgOfflineCopy::KeyExists(int32_t root, const std::string& path) {
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
  SQLite::Database* db = Db();
  if (db == nullptr) return std::nullopt;
  try {
    SQLite::Statement st(*db,
                         "SELECT present, type, data FROM vals"
                         " WHERE root = ?1 AND path = ?2 AND fold = ?3");
    st.bind(1, root);
    st.bind(2, path);
    st.bind(3, fold);
    if (!st.executeStep()) {
      if (KeyExists(root, path) == false) return KnownValue{};
      return std::nullopt;
    }
    if (st.getColumn(0).getInt() == 0) return KnownValue{};
    const SQLite::Column data = st.getColumn(2);
    return KnownValue{CachedValue{
        st.getColumn(1).getInt(),
        std::string(static_cast<const char*>(data.getBlob()), data.getBytes())}};
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace norvik50::settings
