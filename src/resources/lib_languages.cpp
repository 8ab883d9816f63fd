// LIB: the current language, the language list and the language code.
#include "core/library_state.h"
#include "norvik50/lib.h"
#include "resources/language_selection.h"
#include "resources/resource_document.h"

namespace norvik50 {

LibLanguageConsts LIB::tklLanguage(std::u16string_view sRegKey) {
  // Any stored id comes back, also 6 to 8, which the enumeration lacks.
  return static_cast<LibLanguageConsts>(GetCurrentLanguage(*this, sRegKey));
}

SafeArray LIB::tklLanguages(std::u16string_view sRegKey) {
  ApplyRegKey(sRegKey);
  // The key goes on exactly as passed: without one, "ResourceDLL" is read
  // at the root of HKEY_LOCAL_MACHINE, not under the base key.
  return GetLanguageList(*this, sRegKey);
}

std::u16string LIB::tklLangCode(std::u16string_view sRegKey) {
  ResourceDocument();
  return LanguageCode(GetCurrentLanguage(*this, sRegKey));
}

}  // namespace norvik50
