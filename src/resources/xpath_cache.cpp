#include "resources/xpath_cache.h"

#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

// Enough for every caption of every language and a host's list names;
// expressions built from arbitrary input cannot make it grow without end.
constexpr std::size_t kMaxExpressions = kXPathCacheSize;

using Query = std::shared_ptr<const pugi::xpath_query>;

// Least recently used first. A full cache drops only its oldest entry:
// emptying it instead would make a host that cycles through a few more
// expressions than it holds compile every one of them again and again.
class Cache {
 public:
  // The query kept for `xpath`, now the most recently used; nullopt when
  // none is kept.
  std::optional<Query> Find(const std::u16string& xpath) {
    const auto found = index_.find(xpath);
    if (found == index_.end()) return std::nullopt;
    order_.splice(order_.end(), order_, found->second);
    return found->second->second;
  }

  void Keep(const std::u16string& xpath, Query query) {
    if (const auto found = index_.find(xpath); found != index_.end()) {
      order_.splice(order_.end(), order_, found->second);  // another thread was first
      return;
    }
    if (order_.size() >= kMaxExpressions) {
      index_.erase(order_.front().first);
      order_.pop_front();
    }
    order_.emplace_back(xpath, std::move(query));
    index_.emplace(xpath, std::prev(order_.end()));
  }

 private:
  std::list<std::pair<std::u16string, Query>> order_;
  std::unordered_map<std::u16string, decltype(order_)::iterator> index_;
};

struct LockedCache {
  std::mutex mutex;
  Cache cache;
};

LockedCache& TheCache() {
  static LockedCache* cache = new LockedCache;  // never destroyed: lookups may run at exit
  return *cache;
}

Query Compile(std::u16string_view xpath) {
  try {
    return std::make_shared<const pugi::xpath_query>(ToUtf8(xpath).c_str());
  } catch (const pugi::xpath_exception&) {
    return nullptr;  // a broken expression selects nothing
  }
}

}  // namespace

std::shared_ptr<const pugi::xpath_query> CompiledXPath(std::u16string_view xpath) {
  LockedCache& locked = TheCache();
  const std::u16string key(xpath);
  {
    std::lock_guard lock(locked.mutex);
    if (auto kept = locked.cache.Find(key)) return *kept;
  }
  // Compiled outside the lock: other threads' look-ups need not wait.
  Query query = Compile(xpath);
  std::lock_guard lock(locked.mutex);
  locked.cache.Keep(key, query);
  return query;
}

}  // namespace norvik50
