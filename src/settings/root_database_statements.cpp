// The statements a store operation is made of, each on the prepared
// statement the connection keeps for it.
#include "settings/root_database_statements.h"

namespace norvik50::settings {
namespace {

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

std::optional<ChildKey> Child(SQLite::Statement& s) {
  if (!s.executeStep()) return std::nullopt;
  return ChildKey{s.getColumn(0).getString(), s.getColumn(1).getString(),
                  s.getColumn(2).getInt64()};
}

// name, type, data and, when the statement selects it, the fold.
std::optional<StoredValue> Value(SQLite::Statement& s) {
  if (!s.executeStep()) return std::nullopt;
  return StoredValue{s.getColumn(0).getString(), s.getColumn(1).getInt(), Blob(s.getColumn(2)),
                     s.getColumnCount() > 3 ? s.getColumn(3).getString() : std::string()};
}

}  // namespace

RootDatabase::Statements::Statements(SQLite::Database& db)
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
      child_at(db,
               "SELECT name, fold, id FROM keys WHERE parent=?1 ORDER BY fold LIMIT 1 OFFSET ?2"),
      child_after(db,
                  "SELECT name, fold, id FROM keys WHERE parent=?1 AND fold>?2 "
                  "ORDER BY fold LIMIT 1 OFFSET ?3"),
      child_before(db,
                   "SELECT name, fold, id FROM keys WHERE parent=?1 AND fold<?2 "
                   "ORDER BY fold DESC LIMIT 1 OFFSET ?3"),
      value_at(db,
               "SELECT name, type, data, fold FROM vals WHERE key=?1 "
               "ORDER BY fold LIMIT 1 OFFSET ?2"),
      value_after(db,
                  "SELECT name, type, data, fold FROM vals WHERE key=?1 AND fold>?2 "
                  "ORDER BY fold LIMIT 1 OFFSET ?3"),
      value_before(db,
                   "SELECT name, type, data, fold FROM vals WHERE key=?1 AND fold<?2 "
                   "ORDER BY fold DESC LIMIT 1 OFFSET ?3"),
      remove_values(db, "DELETE FROM vals WHERE key=?1"),
      remove_key(db, "DELETE FROM keys WHERE id=?1") {}

std::optional<int64_t> RootDatabase::KeyId(const std::string& folded_path) {
  if (const auto id = CachedKeyId(folded_path)) return id;
  if (!st_) return std::nullopt;
  Use s(st_->find_path);
  s->bind(1, folded_path);
  if (!s->executeStep()) return std::nullopt;
  const int64_t id = s->getColumn(0).getInt64();
  Remember(folded_path, id);
  return id;
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
  const int64_t id = db_->getLastInsertRowid();
  Remember(folded_path, id);
  return id;
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
  return Value(*s);
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
  return Child(*s);
}

std::optional<ChildKey> RootDatabase::ChildNear(int64_t parent, const std::string& from,
                                                bool forward, int64_t skip) {
  if (!st_) return std::nullopt;
  Use s(forward ? st_->child_after : st_->child_before);
  s->bind(1, parent);
  s->bind(2, from);
  s->bind(3, skip);
  return Child(*s);
}

std::optional<StoredValue> RootDatabase::ValueAt(int64_t key, int64_t index) {
  if (!st_) return std::nullopt;
  Use s(st_->value_at);
  s->bind(1, key);
  s->bind(2, index);
  return Value(*s);
}

std::optional<StoredValue> RootDatabase::ValueNear(int64_t key, const std::string& from,
                                                   bool forward, int64_t skip) {
  if (!st_) return std::nullopt;
  Use s(forward ? st_->value_after : st_->value_before);
  s->bind(1, key);
  s->bind(2, from);
  s->bind(3, skip);
  return Value(*s);
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
  // Handles may hold the id of the key just removed, and SQLite hands
  // unused ids out again: every id learnt so far is learnt anew.
  ForgetIds();
}

}  // namespace norvik50::settings
