#include "settings/pg_store.h"

#include <algorithm>
#include <array>
#include <utility>

#include "norvik50/encoding.h"
#include "settings/pg_statements.h"
#include "settings/registry_names.h"
#include "settings/value_bytes.h"

namespace norvik50::settings {
namespace {

constexpr int32_t kNotFound = 2;
constexpr int32_t kDenied = 5;
constexpr int32_t kBadKey = 1010;

bool IsRoot(RegKey key) {
  return key >= HKEY_CLASSES_ROOT && key <= HKEY_DYN_DATA && key != HKEY_PERFORMANCE_DATA;
}

std::string JoinPath(const std::string& base, const std::string& name) {
  return base.empty() ? name : base + "\\" + name;
}

}  // namespace

using pg::Owner;
using pg::StatementName;
using pg::Table;

const PgStore::Handle* PgStore::Resolve(RegKey key, Handle& scratch) const {
  if (IsRoot(key)) {
    scratch = Handle{static_cast<int32_t>(key), {}};
    return &scratch;
  }
  const auto it = handles_.find(key);
  return it == handles_.end() ? nullptr : &it->second;
}

RegKey PgStore::NewHandle(Handle h) {
  const RegKey key = next_handle_++;
  handles_.emplace(key, std::move(h));
  return key;
}

std::optional<PgResult> PgStore::Run(Kind kind, const char* name,
                                     const std::vector<PgParam>& params, PgFailure& failure) {
  return conn_->ExecPrepared(StatementName(kind, name), params, failure);
}

std::optional<PgResult> PgStore::Alone(const std::function<std::optional<PgResult>()>& exec,
                                       PgFailure& failure) {
  if (!in_unit_) return exec();
  // Inside a unit a failing statement would spoil the whole transaction:
  // a savepoint takes back only its own part.
  if (!conn_->Script("SAVEPOINT op", failure)) return std::nullopt;
  auto result = exec();
  PgFailure ignored;
  conn_->Script(result ? "RELEASE SAVEPOINT op" : "ROLLBACK TO SAVEPOINT op", ignored);
  return result;
}

std::optional<PgResult> PgStore::RunWrite(Kind kind, const char* name,
                                          const std::vector<PgParam>& params, PgFailure& failure) {
  return Alone([&] { return Run(kind, name, params, failure); }, failure);
}

std::optional<PgResult> PgStore::RunSqlWrite(const std::string& sql,
                                             const std::vector<PgParam>& params,
                                             PgFailure& failure) {
  return Alone([&] { return conn_->Exec(sql, params, failure); }, failure);
}

void PgStore::NoteValue(int32_t root, const std::string& path, const std::string& fold,
                        const KnownValue& value) {
  cache_.NoteValue(root, path, fold, value);
  if (in_unit_) {
    unit_copy_.push_back({root, path, fold, true, value, true});
  } else {
    copy_.NoteValue(root, path, fold, value);
  }
}

void PgStore::NoteKey(int32_t root, const std::string& path, bool exists) {
  cache_.NoteKey(root, path, exists);
  if (in_unit_) {
    unit_copy_.push_back({root, path, {}, false, {}, exists});
  } else {
    copy_.NoteKey(root, path, exists);
  }
}

std::optional<bool> PgStore::KeyExists(int32_t root, const std::string& path, int32_t& code) {
  if (path.empty()) return true;  // a root always exists
  if (const auto known = cache_.KeyExists(root, path)) return known;
  if (Online()) {
    PgFailure failure;
    const auto r = Run(KindOf(root), "exists", {PgParam::Int(root), PgParam::Bytes(path)}, failure);
    if (r) {
      NoteKey(root, path, r->rows() > 0);
      return r->rows() > 0;
    }
    if (!failure.lost) {
      code = Failed(failure);
      return std::nullopt;
    }
    Lost(failure);
  }
  Away();
  if (const auto copied = copy_.KeyExists(root, path)) return copied;
  return false;  // never seen: missing, as far as this desktop knows
}

int32_t PgStore::OpenKey(RegKey parent, std::u16string_view sub_key, int32_t /*access*/,
                         RegKey& key) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto folded = FoldedKeyPath(sub_key);
  if (!folded) return kBadKey;
  Handle h{p->root, folded->empty() ? p->path : JoinPath(p->path, *folded)};
  Drain();
  int32_t code = 0;
  const auto exists = KeyExists(h.root, h.path, code);
  if (!exists) return code;
  if (!*exists) return kNotFound;
  key = NewHandle(std::move(h));
  return 0;
}

int32_t PgStore::CreateKey(RegKey parent, std::u16string_view sub_key, int32_t /*options*/,
                           int32_t /*access*/, RegKey& key, int32_t* disposition) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto names = SplitKeyPath(sub_key);
  if (!names) return kBadKey;
  const std::size_t depth =
      (p->path.empty() ? 0 : std::count(p->path.begin(), p->path.end(), '\\') + 1) + names->size();
  if (depth > kMaxKeyDepth) return kBadKey;
  Handle h{p->root, p->path};
  const Kind kind = KindOf(h.root);
  Drain();
  if (!Online()) return Away();
  // Every missing key on the way is made in one statement: one round trip
  // however deep the path.
  std::string sql =
      "INSERT INTO " + Table(kind) + "_keys (owner, root, path, parent, name, fold) VALUES ";
  std::vector<PgParam> params{PgParam::Int(h.root)};
  std::vector<std::string> paths;
  for (const auto& name : *names) {
    const std::string fold = FoldedUtf8(name);
    const std::string parent_path = h.path;
    h.path = JoinPath(h.path, fold);
    paths.push_back(h.path);
    const std::size_t n = params.size();
    sql += (n > 1 ? ", (" : "(") + Owner(kind) + ", $1, $" + std::to_string(n + 1) + ", $" +
           std::to_string(n + 2) + ", $" + std::to_string(n + 3) + ", $" + std::to_string(n + 4) +
           ")";
    params.push_back(PgParam::Bytes(h.path));
    params.push_back(PgParam::Bytes(parent_path));
    params.push_back(PgParam::Bytes(ToUtf8(name)));
    params.push_back(PgParam::Bytes(fold));
  }
  bool created = false;
  if (!names->empty()) {
    sql += " ON CONFLICT DO NOTHING RETURNING path";
    PgFailure failure;
    const auto r = RunSqlWrite(sql, params, failure);
    if (!r) return Failed(failure);
    for (int row = 0; row < r->rows(); ++row) {
      const std::string_view made = r->Bytes(row, 0);
      if (made == h.path) created = true;
      for (std::size_t i = 0; i < paths.size(); ++i) {
        if (paths[i] == made) cache_.ChildAdded(h.root, made, ToUtf8((*names)[i]));
      }
    }
    for (const std::string& path : paths) NoteKey(h.root, path, true);
  }
  if (disposition != nullptr) *disposition = created ? REG_CREATE_NEW_KEY : REG_OPENED_EXISTING_KEY;
  key = NewHandle(std::move(h));
  return 0;
}

int32_t PgStore::QueryValue(RegKey key, std::u16string_view name, std::size_t buffer_size,
                            int32_t& type, std::string& data) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kNotFound;
  const std::string fold = FoldedUtf8(name);
  Drain();
  auto answer = [&](const KnownValue& value) -> int32_t {
    if (!value) return kNotFound;
    if (CallerLength(value->type, value->data) > buffer_size) return kRegMoreData;
    type = value->type;
    data = value->data;
    return 0;
  };
  if (const KnownValue* cached = cache_.Value(h->root, h->path, fold)) return answer(*cached);
  if (Online()) {
    PgFailure failure;
    const auto r =
        Run(KindOf(h->root), "get",
            {PgParam::Int(h->root), PgParam::Bytes(h->path), PgParam::Bytes(fold)}, failure);
    if (r) {
      KnownValue value;
      if (r->rows() > 0) value = CachedValue{r->Int(0, 0), std::string(r->Bytes(0, 1))};
      NoteValue(h->root, h->path, fold, value);
      return answer(value);
    }
    if (!failure.lost) return Failed(failure);
    Lost(failure);
  }
  Away();
  const auto copied = copy_.Value(h->root, h->path, fold);
  return copied ? answer(*copied) : kNotFound;
}

int32_t PgStore::SetValue(RegKey key, std::u16string_view name, int32_t type,
                          std::string_view data) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kBadKey;
  const Kind kind = KindOf(h->root);
  Drain();
  if (!Online()) return Away();
  PgFailure failure;
  if (h->path.empty() && !RunWrite(kind, "root", {PgParam::Int(h->root)}, failure)) {
    return Failed(failure);
  }
  const std::string stored = StoredForm(type, data);
  const std::string fold = FoldedUtf8(name);
  if (!RunWrite(kind, "put",
                {PgParam::Int(h->root), PgParam::Bytes(h->path), PgParam::Bytes(fold),
                 PgParam::Bytes(ToUtf8(name)), PgParam::Int(type), PgParam::Bytes(stored)},
                failure)) {
    return Failed(failure);
  }
  NoteValue(h->root, h->path, fold, CachedValue{type, stored});
  return 0;
}

int32_t PgStore::DeleteValue(RegKey key, std::u16string_view name) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  if (!IsValidValueName(name)) return kNotFound;
  Drain();
  if (!Online()) return Away();
  const std::string fold = FoldedUtf8(name);
  PgFailure failure;
  const auto r =
      RunWrite(KindOf(h->root), "unset",
               {PgParam::Int(h->root), PgParam::Bytes(h->path), PgParam::Bytes(fold)}, failure);
  if (!r) return Failed(failure);
  NoteValue(h->root, h->path, fold, std::nullopt);
  return r->rows() > 0 ? 0 : kNotFound;
}

int32_t PgStore::EnumKey(RegKey key, uint32_t index, std::size_t name_buffer,
                         std::u16string& name) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  Drain();
  // A walk asks for index after index (and a tree deletion for index 0
  // again and again): the whole list is read once and kept with the key.
  const std::vector<CachedChild>* children = cache_.Children(h->root, h->path);
  std::vector<CachedChild> fetched;
  if (children == nullptr) {
    if (!Online()) return Away();
    PgFailure failure;
    const auto r =
        Run(KindOf(h->root), "children", {PgParam::Int(h->root), PgParam::Bytes(h->path)}, failure);
    if (!r) return Failed(failure);
    fetched.reserve(r->rows());
    for (int row = 0; row < r->rows(); ++row) {
      fetched.push_back({std::string(r->Bytes(row, 0)), std::string(r->Bytes(row, 1))});
      if (r->Bytes(row, 2) != std::string_view("\x01", 1)) {
        cache_.NoteChildren(h->root, JoinPath(h->path, fetched.back().fold), {});
      }
    }
    // Noted last: noting the leaves may have made the cache start again.
    cache_.NoteChildren(h->root, h->path, fetched);
    children = &fetched;
  }
  if (index >= children->size()) return ERROR_NO_MORE_ITEMS;
  std::u16string found = FromUtf8((*children)[index].name);
  // The buffer holds the terminator too.
  if (found.size() + 1 > name_buffer) return kRegMoreData;
  name = std::move(found);
  return 0;
}

int32_t PgStore::EnumValue(RegKey key, uint32_t index, std::u16string& name, int32_t& type,
                           std::string& data) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* h = Resolve(key, scratch);
  if (h == nullptr) return kBadKey;
  Drain();
  if (!Online()) return Away();
  PgFailure failure;
  const auto r = Run(KindOf(h->root), "value_at",
                     {PgParam::Int(h->root), PgParam::Bytes(h->path),
                      PgParam::Int(static_cast<int32_t>(std::min<uint32_t>(index, INT32_MAX)))},
                     failure);
  if (!r) return Failed(failure);
  if (r->rows() == 0) return ERROR_NO_MORE_ITEMS;
  name = FromUtf8(r->Bytes(0, 0));
  type = r->Int(0, 1);
  data = std::string(r->Bytes(0, 2));
  return 0;
}

int32_t PgStore::DeleteKey(RegKey parent, std::u16string_view sub_key) {
  std::lock_guard lock(mu_);
  Handle scratch;
  const Handle* p = Resolve(parent, scratch);
  if (p == nullptr) return kBadKey;
  const auto folded = FoldedKeyPath(sub_key);
  if (!folded) return kBadKey;
  const std::string path = folded->empty() ? p->path : JoinPath(p->path, *folded);
  if (path.empty()) return kDenied;  // a root key is never deleted
  const int32_t root = p->root;
  const Kind kind = KindOf(root);
  Drain();
  if (!Online()) return Away();
  PgFailure failure;
  const std::vector<PgParam> params{PgParam::Int(root), PgParam::Bytes(path)};
  const auto dropped = RunWrite(kind, "drop", params, failure);
  if (!dropped) return Failed(failure);
  if (dropped->rows() > 0) {
    NoteKey(root, path, false);
    cache_.ChildRemoved(root, path);
    return 0;
  }
  // Nothing deleted: the key is missing, or it has sub-keys.
  const auto exists = Run(kind, "exists", params, failure);
  if (!exists) return Failed(failure);
  return exists->rows() > 0 ? kDenied : kNotFound;
}

int32_t PgStore::CloseKey(RegKey key) {
  std::lock_guard lock(mu_);
  if (IsRoot(key)) return 0;
  return handles_.erase(key) != 0 ? 0 : kBadKey;
}

int32_t PgStore::RunAtomically(std::span<const int32_t> roots,
                               const std::function<int32_t()>& body) {
  std::lock_guard lock(mu_);
  if (in_unit_) return body();
  Drain();
  if (!Online()) return Away();
  PgFailure failure;
  // Refused at once for a root this role may not write, as the local
  // store refuses a file it may not write.
  for (const int32_t root : roots) {
    if (!IsRoot(root)) return kBadKey;
    if (KindOf(root) != kMachine) continue;
    const auto may = conn_->Exec(
        "SELECT has_table_privilege('norvik50.machine_values', 'INSERT, UPDATE, DELETE')", {},
        failure);
    if (!may) return Failed(failure);
    if (may->Bytes(0, 0) != std::string_view("\x01", 1)) {
      return Failed(
          PgFailure{kDenied, false, "role " + session_user_ + " may not write HKEY_LOCAL_MACHINE"});
    }
  }
  if (!conn_->Script("BEGIN", failure)) return Failed(failure);
  in_unit_ = true;
  unit_copy_.clear();
  int32_t code = 0;
  try {
    code = body();
  } catch (...) {
    in_unit_ = false;
    PgFailure ignored;
    if (conn_) conn_->Script("ROLLBACK", ignored);
    cache_.Clear();
    throw;
  }
  in_unit_ = false;
  if (!conn_) {
    // Lost inside the unit: the server kept none of it, nor may the cache.
    cache_.Clear();
    unit_copy_.clear();
    return code != 0 ? code : Away();
  }
  if (code == 0 && conn_->Script("COMMIT", failure)) {
    for (const PendingCopy& c : unit_copy_) {
      if (c.is_value) {
        copy_.NoteValue(c.root, c.path, c.fold, c.value);
      } else {
        copy_.NoteKey(c.root, c.path, c.exists);
      }
    }
    unit_copy_.clear();
    return 0;
  }
  if (code == 0) code = Failed(failure);
  PgFailure ignored;
  if (conn_) conn_->Script("ROLLBACK", ignored);
  // The cache noted the unit's writes as they were made.
  cache_.Clear();
  unit_copy_.clear();
  return code;
}

}  // namespace norvik50::settings
