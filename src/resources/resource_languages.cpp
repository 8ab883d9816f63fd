#include "resources/resource_languages.h"

#include <unicode/uloc.h>

#include <algorithm>
#include <string>

namespace norvik50 {
namespace {

constexpr uint16_t kNeutral = 0x0000;
constexpr uint16_t kEnglishUs = 0x0409;
constexpr uint16_t kSublangDefault = 1;

}  // namespace

std::vector<uint16_t> PreferredResourceLanguages(std::string_view locale_tag) {
  std::vector<uint16_t> order{kNeutral};
  auto add = [&order](uint16_t language) {
    if (std::find(order.begin(), order.end(), language) == order.end()) order.push_back(language);
  };
  // ICU knows the Windows id of every locale it knows; "de-DE" is 0x0407.
  std::string tag(locale_tag);
  std::replace(tag.begin(), tag.end(), '-', '_');
  const uint32_t lcid = uloc_getLCID(tag.c_str());
  const auto language = static_cast<uint16_t>(lcid & 0xFFFF);
  if (language != 0) {
    add(language);
    add(static_cast<uint16_t>((language & 0x3FF) | (kSublangDefault << 10)));
  }
  add(kEnglishUs);
  return order;
}

}  // namespace norvik50
