#include "resources/xpath_cache.h"

#include <mutex>
#include <string>
#include <unordered_map>

#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

// Enough for every caption of every language and a host's list names;
// expressions built from arbitrary input cannot make it grow without end.
constexpr std::size_t kMaxExpressions = 1024;

struct Cache {
  std::mutex mutex;
  std::unordered_map<std::u16string, std::shared_ptr<const pugi::xpath_query>> queries;
};

Cache& TheCache() {
  static Cache* cache = new Cache;  // never destroyed: lookups may run at exit
  return *cache;
}

std::shared_ptr<const pugi::xpath_query> Compile(std::u16string_view xpath) {
  try {
    return std::make_shared<const pugi::xpath_query>(ToUtf8(xpath).c_str());
  } catch (const pugi::xpath_exception&) {
    return nullptr;  // a broken expression selects nothing
  }
}

}  // namespace

std::shared_ptr<const pugi::xpath_query> CompiledXPath(std::u16string_view xpath) {
  Cache& cache = TheCache();
  {
    std::lock_guard lock(cache.mutex);
    const auto found = cache.queries.find(std::u16string(xpath));
    if (found != cache.queries.end()) return found->second;
  }
  auto query = Compile(xpath);
  std::lock_guard lock(cache.mutex);
  if (cache.queries.size() >= kMaxExpressions) cache.queries.clear();
  cache.queries.emplace(std::u16string(xpath), query);
  return query;
}

}  // namespace norvik50
