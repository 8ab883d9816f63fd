// Which language entry of a resource the library takes when a resource
// library holds several (a string in German, English and French).
#ifndef NORVIK50_SRC_RESOURCES_RESOURCE_LANGUAGES_H_
#define NORVIK50_SRC_RESOURCES_RESOURCE_LANGUAGES_H_

#include <cstdint>
#include <string_view>
#include <vector>

namespace norvik50 {

// The Windows language ids to try in order, as the loader tries them for a
// resource call without a language: language-neutral first, then the
// user's language (from the locale tag: "de-DE" is 0x0407), the user's
// primary language with its default sublanguage, then English (US). A
// resource with none of them gives its first language entry.
std::vector<uint16_t> PreferredResourceLanguages(std::string_view locale_tag);

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_RESOURCE_LANGUAGES_H_
