#include "settings/root_database.h"

#include <sqlite3.h>

#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Transaction.h>

#include <chrono>
#include <thread>

#include "norvik50/encoding.h"

namespace norvik50::settings {
namespace {

// How long an operation keeps retrying while other processes hold the
// database (each attempt already waits up to the busy timeout).
constexpr auto kRetryFor = std::chrono::seconds(60);

bool IsBusy(int code) {
  const int primary = code & 0xff;
  return primary == SQLITE_BUSY || primary == SQLITE_LOCKED;
}

// Resets a statement when the step that used it is done, whatever happens.
class Use {
 public:
  explicit Use(SQLite::Statement& s) : s_(s) {}
  ~Use() { s_.tryReset(); }
  SQLite::Statement* operator->() { return &s_; }
  SQLite::Statement& operator*() { return s_; }

 private:
  SQLite::Statement& s_;
};

std::string Blob(const SQLite::Column& c) {
  const void* p = c.getBlob();
  return p ? std::string(static_cast<const char*>(p), static_cast<std::size_t>(c.getBytes()))
           : std::string();
}

}  // namespace

struct RootDatabase::Statements {
  explicit Statements(SQLite::Database& db)
      : find_path(db, "SELECT id FROM keys WHERE path=?1"),
        find_child(db, "SELECT id FROM keys WHERE parent=?1 AND fold=?2"),
        insert_key(db, "INSERT INTO keys(parent, name, fold, path) VALUES(?1, ?2, ?3, ?4)"),
        key_exists(db, "SELECT 1 FROM keys WHERE id=?1"),
        has_children(db, "SELECT 1 FROM keys WHERE parent=?1 LIMIT 1"),
        get_value(db, "SELECT name, type, data FROM vals WHERE key=?1 AND fold=?2"),
        // The name keeps the case it was first written with, as a
        // case-preserving store does when a value is overwritten.
        put_value(db,
                  "INSERT INTO vals(key, name, fold, type, data) "
                  "SELECT ?1, ?2, ?3, ?4, ?5 WHERE EXISTS(SELECT 1 FROM keys WHERE id=?1) "
                  "ON CONFLICT(key, fold) DO UPDATE SET type=excluded.type, data=excluded.data"),
        remove_value(db, "DELETE FROM vals WHERE key=?1 AND fold=?2"),
        child_at(db, "SELECT name, fold FROM keys WHERE parent=?1 ORDER BY fold LIMIT 1 OFFSET ?2"),
        child_after(
            db, "SELECT name, fold FROM keys WHERE parent=?1 AND fold>?2 ORDER BY fold LIMIT 1"),
        value_at(db,
                 "SELECT name, type, data FROM vals WHERE key=?1 ORDER BY fold LIMIT 1 OFFSET ?2"),
        remove_values(db, "DELETE FROM vals WHERE key=?1"),
        remove_key(db, "DELETE FROM keys WHERE id=?1") {}

  SQLite::Statement find_path, find_child, insert_key, key_exists, has_children, get_value,
      put_value, remove_value, child_at, child_after, value_at, remove_values, remove_key;
};

RootDatabase::RootDatabase(StoreFile file, bool writable)
    : file_(std::move(file)), writable_(writable) {}

RootDatabase::~RootDatabase() = default;

int32_t RootDatabase::Read(const std::function<int32_t()>& body, std::u16string& problem) {
  return Run(false, body, problem);
}

int32_t RootDatabase::Write(const std::function<int32_t()>& body, std::u16string& problem) {
  if (!writable_) return 5;
  return Run(true, body, problem);
}

int32_t RootDatabase::Run(bool write, const std::function<int32_t()>& body,
                          std::u16string& problem) {
  const auto give_up = std::chrono::steady_clock::now() + kRetryFor;
  auto pause = std::chrono::milliseconds(1);
  while (true) {
    try {
      if (!st_ && db_) {
        // Prepared once the schema exists; an empty read-only file never
        // gets that far, and its reads find nothing.
        if (db_->tableExists("keys")) st_ = std::make_unique<Statements>(*db_);
      }
      if (!write) return body();
      // IMMEDIATE: the write lock is taken before anything is read, so two
      // writers never both hold a read snapshot they then cannot upgrade.
      SQLite::Transaction tx(*db_, SQLite::TransactionBehavior::IMMEDIATE);
      if (!st_ && db_->tableExists("keys")) st_ = std::make_unique<Statements>(*db_);
      const int32_t code = body();
      if (code == 0) tx.commit();
      return code;
    } catch (const SQLite::Exception& e) {
      const int code = e.getErrorCode();
      if (IsBusy(code) && std::chrono::steady_clock::now() < give_up) {
        std::this_thread::sleep_for(pause);
        if (pause < std::chrono::milliseconds(50)) pause *= 2;
        continue;
      }
      const int primary = code & 0xff;
      if (primary == SQLITE_READONLY || primary == SQLITE_PERM || primary == SQLITE_AUTH) {
        return 5;
      }
      if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB) {
        problem = Describe(std::string("is damaged (") + e.what() + "); left untouched");
      } else {
        problem = Describe(std::string("failed: ") + e.what());
      }
      return 1011;
    }
  }
}

std::optional<int64_t> RootDatabase::FindKeyByPath(const std::string& folded_path) {
  if (!st_) return folded_path.empty() ? std::optional<int64_t>(kRootKeyId) : std::nullopt;
  Use s(st_->find_path);
  s->bind(1, folded_path);
  if (!s->executeStep()) return std::nullopt;
  return s->getColumn(0).getInt64();
}

std::optional<int64_t> RootDatabase::FindChild(int64_t parent, const std::string& fold) {
  if (!st_) return std::nullopt;
  Use s(st_->find_child);
  s->bind(1, parent);
  s->bind(2, fold);
  if (!s->executeStep()) return std::nullopt;
  return s->getColumn(0).getInt64();
}

int64_t RootDatabase::InsertKey(int64_t parent, const std::string& name, const std::string& fold,
                                const std::string& folded_path) {
  Use s(st_->insert_key);
  s->bind(1, parent);
  s->bind(2, name);
  s->bind(3, fold);
  s->bind(4, folded_path);
  s->exec();
  return db_->getLastInsertRowid();
}

bool RootDatabase::KeyExists(int64_t id) {
  if (!st_) return id == kRootKeyId;
  Use s(st_->key_exists);
  s->bind(1, id);
  return s->executeStep();
}

bool RootDatabase::HasChildren(int64_t id) {
  if (!st_) return false;
  Use s(st_->has_children);
  s->bind(1, id);
  return s->executeStep();
}

std::optional<StoredValue> RootDatabase::GetValue(int64_t key, const std::string& fold) {
  if (!st_) return std::nullopt;
  Use s(st_->get_value);
  s->bind(1, key);
  s->bind(2, fold);
  if (!s->executeStep()) return std::nullopt;
  return StoredValue{s->getColumn(0).getString(), s->getColumn(1).getInt(), Blob(s->getColumn(2))};
}

bool RootDatabase::PutValue(int64_t key, const std::string& name, const std::string& fold,
                            int32_t type, const std::string& data) {
  Use s(st_->put_value);
  s->bind(1, key);
  s->bind(2, name);
  s->bind(3, fold);
  s->bind(4, type);
  s->bindNoCopy(5, data.data(), static_cast<int>(data.size()));
  return s->exec() > 0;
}

bool RootDatabase::RemoveValue(int64_t key, const std::string& fold) {
  Use s(st_->remove_value);
  s->bind(1, key);
  s->bind(2, fold);
  return s->exec() > 0;
}

std::optional<ChildKey> RootDatabase::ChildAt(int64_t parent, int64_t index) {
  if (!st_) return std::nullopt;
  Use s(st_->child_at);
  s->bind(1, parent);
  s->bind(2, index);
  if (!s->executeStep()) return std::nullopt;
  return ChildKey{s->getColumn(0).getString(), s->getColumn(1).getString()};
}

std::optional<ChildKey> RootDatabase::ChildAfter(int64_t parent, const std::string& fold) {
  if (!st_) return std::nullopt;
  Use s(st_->child_after);
  s->bind(1, parent);
  s->bind(2, fold);
  if (!s->executeStep()) return std::nullopt;
  return ChildKey{s->getColumn(0).getString(), s->getColumn(1).getString()};
}

std::optional<StoredValue> RootDatabase::ValueAt(int64_t key, int64_t index) {
  if (!st_) return std::nullopt;
  Use s(st_->value_at);
  s->bind(1, key);
  s->bind(2, index);
  if (!s->executeStep()) return std::nullopt;
  return StoredValue{s->getColumn(0).getString(), s->getColumn(1).getInt(), Blob(s->getColumn(2))};
}

void RootDatabase::RemoveKey(int64_t id) {
  {
    Use s(st_->remove_values);
    s->bind(1, id);
    s->exec();
  }
  Use s(st_->remove_key);
  s->bind(1, id);
  s->exec();
}

}  // namespace norvik50::settings
