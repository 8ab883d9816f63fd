#include "resources/form_captions.h"

#include <cstdint>

namespace norvik50 {

std::optional<int32_t> StringResourceNumber(std::u16string_view res_id) {
  if (res_id.empty() || res_id.size() > 10) return std::nullopt;
  int64_t value = 0;
  for (const char16_t c : res_id) {
    if (c < u'0' || c > u'9') return std::nullopt;
    value = value * 10 + (c - u'0');
  }
  if (value > INT32_MAX) return std::nullopt;
  return static_cast<int32_t>(value);
}

std::u16string WithoutAccessKey(std::u16string_view text) {
  std::u16string plain(text);
  RemoveAccessKeys(plain);
  return plain;
}

void RemoveAccessKeys(std::u16string& text) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != u'&') {
      text[kept++] = text[i];
    } else if (i + 1 < text.size() && text[i + 1] == u'&') {
      text[kept++] = u'&';
      ++i;
    }
  }
  text.resize(kept);
}

}  // namespace norvik50
