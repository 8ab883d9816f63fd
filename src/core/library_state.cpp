#include "core/library_state.h"

#include "norvik50/host.h"
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

ErrorMessageShow& ErrorShow() {
  static ErrorMessageShow show;
  return show;
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

void ShowErrorMessage(LIB& lib, std::u16string_view heading, std::u16string_view detail,
                      std::u16string_view title) {
  if (const auto& show = ErrorShow()) {
    show(lib, heading, detail, title);
    return;
  }
  constexpr int32_t kExclamationOk = 48;
  CurrentUserInterface().ShowStandardMessage(heading, detail, kExclamationOk,
                                             title.empty() ? HostApplicationTitle() : title);
}

void SetErrorMessageShow(ErrorMessageShow show) { ErrorShow() = std::move(show); }

}  // namespace norvik50
