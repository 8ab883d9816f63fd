#include "settings/sqlite_store.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

#include "norvik50/encoding.h"
#include "settings/registry_names.h"
#include "settings/store_location.h"
#include "settings/value_bytes.h"

namespace norvik50::settings {
namespace {

constexpr int32_t kNotFound = 2;
constexpr int32_t kDenied = 5;
constexpr int32_t kBadKey = 1010;
constexpr int32_t kWriteAccess = KEY_SET_VALUE | KEY_CREATE_SUB_KEY | KEY_CREATE_LINK;
// What a quick attempt answers when its snapshot cannot vouch for it.
constexpr int32_t kStale = -1;

bool IsRoot(RegKey key) {
  return key >= HKEY_CLASSES_ROOT && key <= HKEY_DYN_DATA && key != HKEY_PERFORMANCE_DATA;
}

std::string JoinPath(const std::string& base, const std::string& name) {
  return base.empty() ? name : base + "\\" + name;
}

// Where to read the `index`-th entry from: the cursor when it is nearer
// than the first entry, counting forward or backward from it.
struct Walk {
  bool from_cursor = false;
  bool forward = true;
  int64_t skip = 0;
};

Walk PlanWalk(bool cursor_valid, uint32_t cursor_index, uint32_t index) {
  if (cursor_valid && index != cursor_index) {
    const bool forward = index > cursor_index;
    const int64_t distance =
        forward ? int64_t{index} - cursor_index : int64_t{cursor_index} - index;
    if (distance - 1 < int64_t{index}) return {true, forward, distance - 1};
  }
  return {false, true, int64_t{index}};
}

}  // namespace

SqliteStore::SqliteStore() = default;
SqliteStore::~SqliteStore() = default;

std::size_t SqliteStore::open_handles() const {
  std::lock_guard lock(mu_);
  return handles_.size();
}

SqliteStore::Handle* SqliteStore::Resolve(RegKey key, Handle& scratch) {
  if (IsRoot(key)) {
    scratch = Handle{};
    scratch.root = static_cast<int32_t>(key);
    return &scratch;
  }
  const auto it = handles_.find(key);
  return it == handles_.end() ? nullptr : &it->second;
}

int32_t SqliteStore::Database(int32_t root, Need need, std::shared_ptr<RootDatabase>& db) {
  const auto& file = StoreFileFor(root);
  if (!file) return kBadKey;
  auto& slot = databases_[root];
  // The folders can change between calls (a host or a test points
  // NORVIK50_REGISTRY_DIR elsewhere): the open file must be the one named now.
  if (slot && slot->path() != file->path) slot.reset();
  if (!slot) {
    StoreProblem problem;
    const int32_t code = RootDatabase::Open(*file, need == Need::kWrite, slot, problem);
    if (problem.number != 0) problem_ = std::move(problem);
    if (code != 0) return code;
  }
  db = slot;
  return 0;
}

int32_t SqliteStore::Database(Handle& h, Need need, std::shared_ptr<RootDatabase>& db) {
  // A handle stays on the file it was opened on, as a key handle stays on
  // its hive; roots (and roots opened before their file existed) follow
  // the folders as they are now.
  if (h.db) {
    db = h.db;
    return 0;
  }
  return Database(h.root, need, db);
}

RegKey SqliteStore::NewHandle(Handle h) {
  const RegKey key = next_handle_++;
  if (spare_.empty()) {
    handles_.emplace(key, std::move(h));
  } else {
    // Hosts open and close a key for every read: the node of the last
    // closed handle (and its strings' room) serves again.
    spare_.key() = key;
    spare_.mapped() = std::move(h);
    handles_.insert(std::move(spare_));
  }
  return key;
}

std::optional<int64_t> SqliteStore::LiveId(Handle& h, RootDatabase& db) {
  if (h.path.empty()) return kRootKeyId;  // a root is never deleted
  if (h.gone) return std::nullopt;
  if (h.epoch == db.epoch()) return h.id;
  const auto id = db.KeyId(h.path);
  // A handle names the key it was opened on: when that key was deleted
  // (and perhaps made again under the same name), the handle is dead. An
  // id only taken from the cache was never checked, so a different one
  // found now is simply the right one.
  if (!id || (h.verified && *id != h.id)) {
    h.gone = true;
    return std::nullopt;
  }
  h.id = *id;
  h.epoch = db.epoch();
  h.verified = true;
  return id;
}

template <class Step>
int32_t SqliteStore::ReadOnKey(Handle& h, RootDatabase& db, int32_t gone, Step step) {
  const RootDatabase::KeepWaiting keep(db);
  if (h.path.empty() || (!h.gone && h.epoch == db.epoch())) {
    const int32_t code =
        db.Single([&] { return step(h.path.empty() ? kRootKeyId : h.id, true); }, problem_);
    if (code != kStale) {
      h.verified = true;
      return code;
    }
  }
  return db.Read(
      [&] {
        const auto id = LiveId(h, db);
        return id ? step(*id, false) : gone;
      },
      problem_);
}

void SqliteStore::NoteWriteRefused(const RootDatabase& db) {
  problem_ = {kDenied,
              FromUtf8("settings database " + db.path() + " cannot be written by this user: it " +
                       db.read_only_reason() + "; the write was refused")};
}

int32_t SqliteStore::OpenKey(RegKey parent, std::u16string_view sub_key, int32_t access,
                             RegKey& key) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto folded = FoldedKeyPath(sub_key);
  if (!folded) return kBadKey;
  Handle h;
  h.root = p->root;
  h.path = folded->empty() ? p->path : JoinPath(p->path, *folded);

  std::shared_ptr<RootDatabase> db;
  const int32_t opened = Database(*p, Need::kRead, db);
  if (opened == kNotFound) {
    // No file yet: only the root itself exists.
    if (!h.path.empty()) return kNotFound;
    key = NewHandle(std::move(h));
    return 0;
  }
  if (opened != 0) return opened;
  if ((access & kWriteAccess) != 0 && !db->writable()) {
    NoteWriteRefused(*db);
    return kDenied;
  }
  h.db = db;
  if (const auto id = db->CachedKeyId(h.path)) {
    // Checked against the snapshot of the first operation on the handle.
    h.id = *id;
    h.epoch = db->epoch();
    key = NewHandle(std::move(h));
    return 0;
  }
  const int32_t code = db->Read(
      [&] {
        const auto id = db->KeyId(h.path);
        if (!id) return kNotFound;
        h.id = *id;
        h.epoch = db->epoch();
        h.verified = true;
        return 0;
      },
      problem_);
  if (code == 0) key = NewHandle(std::move(h));
  return code;
}

int32_t SqliteStore::CreateKey(RegKey parent, std::u16string_view sub_key, int32_t /*options*/,
                               int32_t /*access*/, RegKey& key, int32_t* disposition) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto names = SplitKeyPath(sub_key);
  if (!names) return kBadKey;
  // Trees are walked recursively (counting, deleting, exporting): their
  // depth is bounded as the registry bounds it, so no walk can run out of
  // stack.
  const std::size_t depth =
      (p->path.empty() ? 0 : std::count(p->path.begin(), p->path.end(), '\\') + 1) + names->size();
  if (depth > kMaxKeyDepth) return kBadKey;
  std::shared_ptr<RootDatabase> db;
  if (const int32_t code = Database(*p, Need::kWrite, db); code != 0) return code;
  if (!db->writable()) {
    NoteWriteRefused(*db);
    return kDenied;
  }
  Handle h;
  h.root = p->root;
  h.db = db;
  bool created = false;
  const int32_t code = db->Write(
      [&] {
        const auto parent_id = LiveId(*p, *db);
        if (!parent_id) return kBadKey;  // the parent was deleted meanwhile
        h.id = *parent_id;
        h.path = p->path;
        created = false;
        for (const auto& name : *names) {
          const std::string fold = FoldedUtf8(name);
          h.path = JoinPath(h.path, fold);
          if (const auto child = db->KeyId(h.path)) {
            h.id = *child;
          } else {
            h.id = db->InsertKey(h.id, ToUtf8(name), fold, h.path);
            created = true;
          }
        }
        return 0;
      },
      problem_);
  if (code != 0) return code;
  h.epoch = db->epoch();
  h.verified = true;
  if (disposition != nullptr) *disposition = created ? REG_CREATE_NEW_KEY : REG_OPENED_EXISTING_KEY;
  key = NewHandle(std::move(h));
  return 0;
}

int32_t SqliteStore::QueryValue(RegKey key, std::u16string_view name, std::size_t buffer_size,
                                int32_t& type, std::string& data) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kNotFound;
  std::shared_ptr<RootDatabase> db;
  if (const int32_t code = Database(*h, Need::kRead, db); code != 0) return code;
  const std::string fold = FoldedUtf8(name);
  return ReadOnKey(*h, *db, kNotFound, [&](int64_t id, bool quick) {
    auto value = db->GetValue(id, fold);
    if (quick && !db->IdsCurrent()) return kStale;
    if (!value) return kNotFound;
    if (CallerLength(value->type, value->data) > buffer_size) return kRegMoreData;
    type = value->type;
    data = std::move(value->data);
    return 0;
  });
}

int32_t SqliteStore::SetValue(RegKey key, std::u16string_view name, int32_t type,
                              std::string_view data) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kBadKey;
  std::shared_ptr<RootDatabase> db;
  if (const int32_t code = Database(*h, Need::kWrite, db); code != 0) return code;
  if (!db->writable()) {
    NoteWriteRefused(*db);
    return kDenied;
  }
  const std::string stored = StoredForm(type, data);
  const std::string utf8 = ToUtf8(name);
  const std::string fold = FoldedUtf8(name);
  return db->Write(
      [&] {
        const auto id = LiveId(*h, *db);
        return id && db->PutValue(*id, utf8, fold, type, stored) ? 0 : kBadKey;
      },
      problem_);
}

int32_t SqliteStore::DeleteValue(RegKey key, std::u16string_view name) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kNotFound;
  std::shared_ptr<RootDatabase> db;
  if (const int32_t code = Database(*h, Need::kRead, db); code != 0) return code;
  if (!db->writable()) {
    NoteWriteRefused(*db);
    return kDenied;
  }
  const std::string fold = FoldedUtf8(name);
  return db->Write(
      [&] {
        const auto id = LiveId(*h, *db);
        return id && db->RemoveValue(*id, fold) ? 0 : kNotFound;
      },
      problem_);
}

template <class Entry>
int32_t SqliteStore::Enumerate(RegKey key, Cursor Handle::*cursor, uint32_t index,
                               std::optional<Entry> (RootDatabase::*at)(int64_t, int64_t),
                               std::optional<Entry> (RootDatabase::*near)(int64_t,
                                                                          const std::string&, bool,
                                                                          int64_t),
                               std::optional<Entry>& entry) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  std::shared_ptr<RootDatabase> db;
  const int32_t opened = Database(*h, Need::kRead, db);
  if (opened == kNotFound) return ERROR_NO_MORE_ITEMS;
  if (opened != 0) return opened;
  Cursor& c = h->*cursor;
  const int32_t code = ReadOnKey(*h, *db, ERROR_NO_MORE_ITEMS, [&](int64_t id, bool quick) {
    // The cursor holds only while the store is exactly as it was when it
    // was taken: a quick attempt finds out after its statement, a
    // transaction before. Without the cursor, the ids must be current.
    const bool cursor_holds = c.valid && (quick || db->DataVersion() == c.version);
    const Walk walk = PlanWalk(cursor_holds, c.index, index);
    entry = walk.from_cursor ? ((*db).*near)(id, c.fold, walk.forward, walk.skip)
                             : ((*db).*at)(id, walk.skip);
    if (quick && !(walk.from_cursor ? db->DataVersion() == c.version : db->IdsCurrent())) {
      return kStale;
    }
    return entry ? 0 : static_cast<int32_t>(ERROR_NO_MORE_ITEMS);
  });
  if (code != 0) {
    c.valid = false;
    return code;
  }
  c = Cursor{true, index, entry->fold, db->DataVersion()};
  if constexpr (std::is_same_v<Entry, ChildKey>) {
    // Walks open the sub-keys they enumerate (counting, deleting,
    // exporting a tree): the id read with the name saves each open its own
    // look-up, however large the tree.
    db->NoteKeyId(JoinPath(h->path, entry->fold), entry->id);
  }
  return 0;
}

int32_t SqliteStore::EnumKey(RegKey key, uint32_t index, std::size_t name_buffer,
                             std::u16string& name) {
  std::optional<ChildKey> child;
  const int32_t code =
      Enumerate(key, &Handle::keys, index, &RootDatabase::ChildAt, &RootDatabase::ChildNear, child);
  if (code != 0) return code;
  std::u16string found = FromUtf8(child->name);
  // The buffer holds the terminator too.
  if (found.size() + 1 > name_buffer) return kRegMoreData;
  name = std::move(found);
  return 0;
}

int32_t SqliteStore::EnumValue(RegKey key, uint32_t index, std::u16string& name, int32_t& type,
                               std::string& data) {
  std::optional<StoredValue> value;
  const int32_t code = Enumerate(key, &Handle::values, index, &RootDatabase::ValueAt,
                                 &RootDatabase::ValueNear, value);
  if (code != 0) return code;
  name = FromUtf8(value->name);
  type = value->type;
  data = std::move(value->data);
  return 0;
}

int32_t SqliteStore::DeleteKey(RegKey parent, std::u16string_view sub_key) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto folded = FoldedKeyPath(sub_key);
  if (!folded) return kBadKey;
  const std::string path = folded->empty() ? p->path : JoinPath(p->path, *folded);
  // A root key is never deleted.
  if (path.empty()) return kDenied;
  std::shared_ptr<RootDatabase> db;
  if (const int32_t code = Database(*p, Need::kRead, db); code != 0) return code;
  if (!db->writable()) {
    NoteWriteRefused(*db);
    return kDenied;
  }
  return db->Write(
      [&] {
        const auto id = db->KeyId(path);
        if (!id) return kNotFound;
        // Sub-keys first: the caller deletes a tree leaf by leaf.
        if (db->HasChildren(*id)) return kDenied;
        db->RemoveKey(*id);
        return 0;
      },
      problem_);
}

int32_t SqliteStore::FlushKey(RegKey key) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  std::shared_ptr<RootDatabase> db;
  const int32_t opened = Database(*h, Need::kRead, db);
  if (opened == kNotFound) return 0;  // no file: nothing was ever stored
  if (opened != 0) return opened;
  return db->Flush(problem_);
}

int32_t SqliteStore::RunAtomically(std::span<const int32_t> roots,
                                   const std::function<int32_t()>& body) {
  std::lock_guard lock(mu_);
  if (in_unit_) return body();
  std::vector<int32_t> order(roots.begin(), roots.end());
  std::sort(order.begin(), order.end());
  order.erase(std::unique(order.begin(), order.end()), order.end());
  std::vector<std::shared_ptr<RootDatabase>> units;
  int32_t code = 0;
  for (const int32_t root : order) {
    std::shared_ptr<RootDatabase> db;
    code = IsRoot(root) ? Database(root, Need::kWrite, db) : kBadKey;
    if (code == 0 && !db->writable()) {
      NoteWriteRefused(*db);
      code = kDenied;
    }
    if (code == 0) code = db->BeginUnit(problem_);
    if (code != 0) break;
    units.push_back(std::move(db));
  }
  if (code == 0) {
    in_unit_ = true;
    try {
      code = body();
    } catch (...) {
      in_unit_ = false;
      StoreProblem ignored;
      for (const auto& db : units) db->EndUnit(false, ignored);
      throw;
    }
    in_unit_ = false;
  }
  // The shared stores commit first: with readers in the way and a synced
  // rollback journal, theirs is the commit more likely to fail, and
  // nothing has been kept when it does.
  std::stable_partition(units.begin(), units.end(),
                        [](const auto& db) { return !db->private_file(); });
  bool keep = code == 0;
  for (const auto& db : units) {
    const int32_t ended = db->EndUnit(keep, problem_);
    if (keep && ended != 0) {
      code = ended;
      keep = false;
    }
  }
  return code;
}

int32_t SqliteStore::CloseKey(RegKey key) {
  std::lock_guard lock(mu_);
  if (IsRoot(key)) return 0;
  auto node = handles_.extract(key);
  if (node.empty()) return kBadKey;
  node.mapped().db.reset();
  spare_ = std::move(node);
  return 0;
}

std::u16string SqliteStore::TakeProblem() { return TakeStoreProblem().description; }

StoreProblem SqliteStore::TakeStoreProblem() {
  std::lock_guard lock(mu_);
  StoreProblem problem = std::exchange(problem_, StoreProblem{});
  // A refusal stays as it is for the whole process: saying it once is
  // enough, and a host that keeps asking must not fill its log.
  if (problem.number == kDenied && !refusals_.insert(problem.description).second) return {};
  return problem;
}

}  // namespace norvik50::settings
