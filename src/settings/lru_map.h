// A map of bounded size that forgets the entry used least recently when it
// is full, one entry at a time, so that a working set larger than the
// bound costs one miss per entry and never a sudden loss of every entry.
//
// Keys are text; lookups take a string_view and allocate nothing. Not
// thread-safe: the owner serialises access.
#ifndef NORVIK50_SRC_SETTINGS_LRU_MAP_H_
#define NORVIK50_SRC_SETTINGS_LRU_MAP_H_

#include <cstddef>
#include <iterator>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace norvik50::settings {

template <class Value>
class LruMap {
 public:
  // REQUIRES: capacity > 0.
  explicit LruMap(std::size_t capacity) : capacity_(capacity) { index_.reserve(capacity); }
  LruMap(const LruMap&) = delete;
  LruMap& operator=(const LruMap&) = delete;

  // The value of `key`, which becomes the most recently used entry; nullopt
  // when it is not kept.
  std::optional<Value> Find(std::string_view key) {
    const auto it = index_.find(key);
    if (it == index_.end()) return std::nullopt;
    order_.splice(order_.begin(), order_, it->second);
    return it->second->second;
  }

  // Keeps `value` under `key` as the most recently used entry, replacing
  // an older value; when the map is full, the least recently used entry
  // makes room.
  void Put(std::string_view key, Value value) {
    if (const auto it = index_.find(key); it != index_.end()) {
      it->second->second = std::move(value);
      order_.splice(order_.begin(), order_, it->second);
      return;
    }
    if (index_.size() >= capacity_) {
      // The least recently used entry's list and index nodes (and its key's
      // room) serve the new entry: a walk through more entries than the
      // map holds allocates nothing.
      const auto last = std::prev(order_.end());
      auto node = index_.extract(std::string_view(last->first));
      last->first.assign(key);
      last->second = std::move(value);
      order_.splice(order_.begin(), order_, last);
      node.key() = std::string_view(last->first);
      index_.insert(std::move(node));
      return;
    }
    order_.emplace_front(std::string(key), std::move(value));
    // The index refers to the key inside the list node, which never moves.
    index_.emplace(std::string_view(order_.front().first), order_.begin());
  }

  void Clear() {
    index_.clear();
    order_.clear();
  }

  std::size_t size() const noexcept { return index_.size(); }
  std::size_t capacity() const noexcept { return capacity_; }

 private:
  using Entry = std::pair<std::string, Value>;
  std::size_t capacity_;
  std::list<Entry> order_;  // most recently used first
  std::unordered_map<std::string_view, typename std::list<Entry>::iterator> index_;
};

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_LRU_MAP_H_
