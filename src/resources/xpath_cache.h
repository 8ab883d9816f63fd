// Compiled XPath expressions, kept by their text. The resource lookups
// build the same few expressions over and over (one per caption name and
// language); compiling each once makes a lookup cost no more than the
// evaluation.
#ifndef NORVIK50_SRC_RESOURCES_XPATH_CACHE_H_
#define NORVIK50_SRC_RESOURCES_XPATH_CACHE_H_

#include <pugixml.hpp>

#include <memory>
#include <string_view>

namespace norvik50 {

// How many compiled expressions the cache keeps.
inline constexpr std::size_t kXPathCacheSize = 1024;

// The compiled form of `xpath`; nullptr when it is not a valid XPath 1.0
// expression. Safe to call from several threads. The cache holds
// kXPathCacheSize expressions; a new one beyond that drops the one least recently used.
std::shared_ptr<const pugi::xpath_query> CompiledXPath(std::u16string_view xpath);

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_XPATH_CACHE_H_
