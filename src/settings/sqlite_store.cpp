#include "settings/sqlite_store.h"

#include <algorithm>
#include <utility>

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

bool IsRoot(RegKey key) {
  return key >= HKEY_CLASSES_ROOT && key <= HKEY_DYN_DATA && key != HKEY_PERFORMANCE_DATA;
}

std::string JoinPath(const std::string& base, const std::string& name) {
  return base.empty() ? name : base + "\\" + name;
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
    scratch = Handle{static_cast<int32_t>(key), kRootKeyId, {}, 0, {}};
    return &scratch;
  }
  const auto it = handles_.find(key);
  return it == handles_.end() ? nullptr : &it->second;
}

int32_t SqliteStore::Database(int32_t root, Need need, RootDatabase*& db) {
  const auto file = StoreFileFor(root);
  if (!file) return kBadKey;
  auto& slot = databases_[root];
  // The folders can change between calls (a host or a test points
  // NORVIK50_REGISTRY_DIR elsewhere): the open file must be the one named now.
  if (slot && slot->path() != file->path) slot.reset();
  if (!slot) {
    std::u16string problem;
    const int32_t code = RootDatabase::Open(*file, need == Need::kWrite, slot, problem);
    if (!problem.empty()) problem_ = problem;
    if (code != 0) return code;
  }
  db = slot.get();
  return 0;
}

RegKey SqliteStore::NewHandle(Handle h) {
  const RegKey key = next_handle_++;
  handles_.emplace(key, std::move(h));
  return key;
}

int32_t SqliteStore::OpenKey(RegKey parent, std::u16string_view sub_key, int32_t access,
                             RegKey& key) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto names = SplitKeyPath(sub_key);
  if (!names) return kBadKey;
  Handle h{p->root, p->id, p->path, 0, {}};
  for (const auto& name : *names) h.path = JoinPath(h.path, ToUtf8(FoldName(name)));

  RootDatabase* db = nullptr;
  const int32_t opened = Database(h.root, Need::kRead, db);
  if (opened == kNotFound) {
    // No file yet: only the root itself exists.
    if (!h.path.empty() || !names->empty() || p->id != kRootKeyId) return kNotFound;
    key = NewHandle(std::move(h));
    return 0;
  }
  if (opened != 0) return opened;
  if ((access & kWriteAccess) != 0 && !db->writable()) return kDenied;
  const int32_t code = db->Read(
      [&] {
        const auto id = db->FindKeyByPath(h.path);
        if (!id) return kNotFound;
        h.id = *id;
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
  const Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto names = SplitKeyPath(sub_key);
  if (!names) return kBadKey;
  // Trees are walked recursively (counting, deleting, exporting): their
  // depth is bounded as the registry bounds it, so no walk can run out of
  // stack.
  const std::size_t depth =
      (p->path.empty() ? 0 : std::count(p->path.begin(), p->path.end(), '\\') + 1) + names->size();
  if (depth > kMaxKeyDepth) return kBadKey;
  RootDatabase* db = nullptr;
  if (const int32_t code = Database(p->root, Need::kWrite, db); code != 0) return code;
  Handle h{p->root, p->id, p->path, 0, {}};
  bool created = false;
  const int32_t code = db->Write(
      [&] {
        h.id = p->id;
        h.path = p->path;
        created = false;
        if (!db->KeyExists(h.id)) return kBadKey;  // the parent was deleted meanwhile
        for (const auto& name : *names) {
          const std::string fold = ToUtf8(FoldName(name));
          h.path = JoinPath(h.path, fold);
          if (const auto child = db->FindChild(h.id, fold)) {
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
  if (disposition != nullptr) *disposition = created ? REG_CREATE_NEW_KEY : REG_OPENED_EXISTING_KEY;
  key = NewHandle(std::move(h));
  return 0;
}

int32_t SqliteStore::QueryValue(RegKey key, std::u16string_view name, std::size_t buffer_size,
                                int32_t& type, std::string& data) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kNotFound;
  RootDatabase* db = nullptr;
  if (const int32_t code = Database(h->root, Need::kRead, db); code != 0) return code;
  const std::string fold = ToUtf8(FoldName(name));
  return db->Read(
      [&] {
        auto value = db->GetValue(h->id, fold);
        if (!value) return kNotFound;
        if (CallerLength(value->type, value->data) > buffer_size) return kRegMoreData;
        type = value->type;
        data = std::move(value->data);
        return 0;
      },
      problem_);
}

int32_t SqliteStore::SetValue(RegKey key, std::u16string_view name, int32_t type,
                              std::string_view data) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kBadKey;
  RootDatabase* db = nullptr;
  if (const int32_t code = Database(h->root, Need::kWrite, db); code != 0) return code;
  const std::string stored = StoredForm(type, data);
  const std::string utf8 = ToUtf8(name);
  const std::string fold = ToUtf8(FoldName(name));
  return db->Write([&] { return db->PutValue(h->id, utf8, fold, type, stored) ? 0 : kBadKey; },
                   problem_);
}

int32_t SqliteStore::DeleteValue(RegKey key, std::u16string_view name) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kNotFound;
  RootDatabase* db = nullptr;
  if (const int32_t code = Database(h->root, Need::kRead, db); code != 0) return code;
  const std::string fold = ToUtf8(FoldName(name));
  return db->Write([&] { return db->RemoveValue(h->id, fold) ? 0 : kNotFound; }, problem_);
}

int32_t SqliteStore::EnumKey(RegKey key, uint32_t index, std::size_t name_buffer,
                             std::u16string& name) {
  std::lock_guard lock(mu_);
  Handle scratch;
  Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  RootDatabase* db = nullptr;
  const int32_t opened = Database(h->root, Need::kRead, db);
  if (opened == kNotFound) return ERROR_NO_MORE_ITEMS;
  if (opened != 0) return opened;
  std::optional<ChildKey> child;
  const int32_t code = db->Read(
      [&] {
        child = (index > 0 && index == h->next_index) ? db->ChildAfter(h->id, h->last_fold)
                                                      : db->ChildAt(h->id, index);
        return child ? 0 : ERROR_NO_MORE_ITEMS;
      },
      problem_);
  if (code != 0) return code;
  h->next_index = index + 1;
  h->last_fold = child->fold;
  std::u16string found = FromUtf8(child->name);
  // The buffer holds the terminator too.
  if (found.size() + 1 > name_buffer) return kRegMoreData;
  name = std::move(found);
  return 0;
}

int32_t SqliteStore::EnumValue(RegKey key, uint32_t index, std::u16string& name, int32_t& type,
                               std::string& data) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  RootDatabase* db = nullptr;
  const int32_t opened = Database(h->root, Need::kRead, db);
  if (opened == kNotFound) return ERROR_NO_MORE_ITEMS;
  if (opened != 0) return opened;
  return db->Read(
      [&] {
        auto value = db->ValueAt(h->id, index);
        if (!value) return static_cast<int32_t>(ERROR_NO_MORE_ITEMS);
        name = FromUtf8(value->name);
        type = value->type;
        data = std::move(value->data);
        return 0;
      },
      problem_);
}

int32_t SqliteStore::DeleteKey(RegKey parent, std::u16string_view sub_key) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto names = SplitKeyPath(sub_key);
  if (!names) return kBadKey;
  std::string path = p->path;
  for (const auto& name : *names) path = JoinPath(path, ToUtf8(FoldName(name)));
  // A root key is never deleted.
  if (path.empty()) return kDenied;
  RootDatabase* db = nullptr;
  if (const int32_t code = Database(p->root, Need::kRead, db); code != 0) return code;
  return db->Write(
      [&] {
        const auto id = db->FindKeyByPath(path);
        if (!id) return kNotFound;
        // Sub-keys first: the caller deletes a tree leaf by leaf.
        if (db->HasChildren(*id)) return kDenied;
        db->RemoveKey(*id);
        return 0;
      },
      problem_);
}

int32_t SqliteStore::CloseKey(RegKey key) {
  std::lock_guard lock(mu_);
  if (IsRoot(key)) return 0;
  return handles_.erase(key) > 0 ? 0 : kBadKey;
}

std::u16string SqliteStore::TakeProblem() {
  std::lock_guard lock(mu_);
  return std::exchange(problem_, std::u16string());
}

}  // namespace norvik50::settings
