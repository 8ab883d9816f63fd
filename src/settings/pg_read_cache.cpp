#include "settings/pg_read_cache.h"

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
  if (!exists) key.values.clear();
  key.exists = exists;
}

const KnownValue* PgReadCache::Value(int32_t root, std::string_view path,
                                     const std::string& fold) {
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

void PgReadCache::ForgetKey(int32_t root, std::string_view path) { keys_.erase(Id(root, path)); }

void PgReadCache::ForgetRoot(int32_t root) {
  for (auto it = keys_.begin(); it != keys_.end();) {
    int32_t r = 0;
    std::memcpy(&r, it->first.data(), sizeof r);
    it = r == root ? keys_.erase(it) : std::next(it);
  }
}

}  // namespace norvik50::settings
