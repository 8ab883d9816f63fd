#include "settings/pg_read_cache.h"

#include <algorithm>
#include <cstring>

namespace norvik50::settings {

const std::string& PgReadCache::Id(int32_t root, std::string_view path) {
  id_.resize(sizeof root);
  std::memcpy(id_.data(), &root, sizeof root);
  id_.append(path);
  return id_;
}

PgReadCache::Key& PgReadCache::Entry(int32_t root, std::string_view path) {
  const std::string& id = Id(root, path);
  if (const auto it = keys_.find(id); it != keys_.end()) return it->second;
  // A host that walks ever new keys must not grow the process without end;
  // starting again costs one round trip per key still in use.
  if (keys_.size() >= kMaxKeys) keys_.clear();
  return keys_[id];
}

std::optional<bool> PgReadCache::KeyExists(int32_t root, std::string_view path) {
  const auto it = keys_.find(Id(root, path));
  if (it == keys_.end()) return std::nullopt;
  return it->second.exists;
}

void PgReadCache::NoteKey(int32_t root, std::string_view path, bool exists) {
  Key& key = Entry(root, path);
  if (!exists) {
    key.values.clear();
    key.children.reset();
  }
  key.exists = exists;
}

const KnownValue* PgReadCache::Value(int32_t root, std::string_view path, const std::string& fold) {
  static const KnownValue kMissing;
  const auto it = keys_.find(Id(root, path));
  if (it == keys_.end()) return nullptr;
  if (it->second.exists == false) return &kMissing;
  const auto value = it->second.values.find(fold);
  return value == it->second.values.end() ? nullptr : &value->second;
}

void PgReadCache::NoteValue(int32_t root, std::string_view path, const std::string& fold,
                            KnownValue value) {
  Key& key = Entry(root, path);
  // A stored value proves its key; a missing one proves nothing about it.
  if (value) key.exists = true;
  key.values[fold] = std::move(value);
}

const std::vector<CachedChild>* PgReadCache::Children(int32_t root, std::string_view path) {
  const auto it = keys_.find(Id(root, path));
  if (it == keys_.end() || !it->second.children) return nullptr;
  return &*it->second.children;
}

void PgReadCache::NoteChildren(int32_t root, std::string_view path,
                               std::vector<CachedChild> children) {
  Key& key = Entry(root, path);
  key.exists = true;
  key.children = std::move(children);
}

std::vector<CachedChild>* PgReadCache::ParentList(int32_t root, std::string_view child,
                                                  std::string_view& fold) {
  const std::size_t slash = child.rfind('\\');
  const std::string_view parent = slash == std::string_view::npos ? "" : child.substr(0, slash);
  fold = slash == std::string_view::npos ? child : child.substr(slash + 1);
  const auto it = keys_.find(Id(root, parent));
  if (it == keys_.end() || !it->second.children) return nullptr;
  return &*it->second.children;
}

namespace {

bool FoldBefore(const CachedChild& c, std::string_view fold) { return c.fold < fold; }

}  // namespace

void PgReadCache::ChildAdded(int32_t root, std::string_view child, std::string_view name) {
  std::string_view fold;
  std::vector<CachedChild>* list = ParentList(root, child, fold);
  if (list == nullptr) return;
  const auto at = std::lower_bound(list->begin(), list->end(), fold, FoldBefore);
  if (at == list->end() || at->fold != fold) {
    list->insert(at, CachedChild{std::string(name), std::string(fold)});
  }
}

void PgReadCache::ChildRemoved(int32_t root, std::string_view child) {
  std::string_view fold;
  std::vector<CachedChild>* list = ParentList(root, child, fold);
  if (list == nullptr) return;
  const auto at = std::lower_bound(list->begin(), list->end(), fold, FoldBefore);
  if (at != list->end() && at->fold == fold) list->erase(at);
}

void PgReadCache::ForgetKey(int32_t root, std::string_view path) {
  keys_.erase(Id(root, path));
  if (path.empty()) return;
  std::string_view fold;
  if (ParentList(root, path, fold) != nullptr) {
    const std::size_t slash = path.rfind('\\');
    keys_.at(Id(root, slash == std::string_view::npos ? "" : path.substr(0, slash)))
        .children.reset();
  }
}

void PgReadCache::ForgetRoot(int32_t root) {
  for (auto it = keys_.begin(); it != keys_.end();) {
    int32_t r = 0;
    std::memcpy(&r, it->first.data(), sizeof r);
    it = r == root ? keys_.erase(it) : std::next(it);
  }
}

}  // namespace norvik50::settings
