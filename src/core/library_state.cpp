#include "core/library_state.h"

#include "norvik50/lib.h"

namespace norvik50 {
namespace {

std::u16string& StoredBaseKey() {
  static std::u16string key;
  return key;
}

std::function<int16_t(LIB&)>& LanguageSource() {
  static std::function<int16_t(LIB&)> source;
  return source;
}

}  // namespace

std::u16string BaseKey() {
  std::u16string& key = StoredBaseKey();
  if (key.empty()) key = kDefaultBaseKey;
  return key;
}

void SetBaseKey(std::u16string_view key) { StoredBaseKey() = key; }

int16_t MessageLanguage(LIB& lib) {
  const auto& source = LanguageSource();
  return source ? source(lib) : static_cast<int16_t>(LANG_ENGLISH);
}

void SetMessageLanguageSource(std::function<int16_t(LIB&)> source) {
  LanguageSource() = std::move(source);
}

}  // namespace norvik50
