// What one process has read from the settings server, so that reading a
// value again costs no round trip. The owner keeps it coherent: it forgets
// a key when a change to it is announced, and notes its own writes at once.
//
// Bounded: past kMaxKeys keys it starts again empty. Not thread-safe.
#ifndef NORVIK50_SRC_SETTINGS_PG_READ_CACHE_H_
#define NORVIK50_SRC_SETTINGS_PG_READ_CACHE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace norvik50::settings {

struct CachedValue {
  int32_t type = 0;
  std::string data;
};

// A value as known: nullopt when the store holds none.
using KnownValue = std::optional<CachedValue>;

// A sub-key as listed: its name as written and folded.
struct CachedChild {
  std::string name, fold;
};

class PgReadCache {
 public:
  static constexpr std::size_t kMaxKeys = 16384;

  // Whether key `path` (folded) of `root` exists: nullopt when not known.
  std::optional<bool> KeyExists(int32_t root, std::string_view path);
  void NoteKey(int32_t root, std::string_view path, bool exists);
  // Value `fold` of key `path`: nullptr when not known. A key known to be
  // missing has every value known to be missing.
  const KnownValue* Value(int32_t root, std::string_view path, const std::string& fold);
  void NoteValue(int32_t root, std::string_view path, const std::string& fold, KnownValue value);

  // The sub-keys of `path` in fold order: nullptr when not known.
  const std::vector<CachedChild>* Children(int32_t root, std::string_view path);
  void NoteChildren(int32_t root, std::string_view path, std::vector<CachedChild> children);
  // This process made or deleted sub-key `child` (a path): the list of
  // its parent, when known, is kept up to date in place.
  void ChildAdded(int32_t root, std::string_view child, std::string_view name);
  void ChildRemoved(int32_t root, std::string_view child);

  // Forgets key `path`, its values and sub-keys, and its parent's list of
  // sub-keys (someone changed them).
  void ForgetKey(int32_t root, std::string_view path);
  // Forgets every key of `root`.
  void ForgetRoot(int32_t root);
  void Clear() { keys_.clear(); }
  std::size_t size() const { return keys_.size(); }

 private:
  struct Key {
    std::optional<bool> exists;
    std::unordered_map<std::string, KnownValue> values;
    std::optional<std::vector<CachedChild>> children;
  };
  // The list of sub-keys of the parent of `child`, when known; `fold`
  // receives the child's own folded name.
  std::vector<CachedChild>* ParentList(int32_t root, std::string_view child,
                                       std::string_view& fold);
  // The map's key for root and path, built in a buffer kept for reuse.
  const std::string& Id(int32_t root, std::string_view path);
  Key& Entry(int32_t root, std::string_view path);

  std::unordered_map<std::string, Key> keys_;
  std::string id_;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_PG_READ_CACHE_H_
