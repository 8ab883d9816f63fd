// The current language and the list of languages whose resource
// libraries exist: the shared entry points of the resource members, the
// error messages and the dialogs.
#ifndef NORVIK50_SRC_RESOURCES_LANGUAGE_SELECTION_H_
#define NORVIK50_SRC_RESOURCES_LANGUAGE_SELECTION_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/variant.h"

namespace norvik50 {

class LIB;

// GetCurrentLanguage: a non-empty `key` becomes the base key; then
// "Language", else "DefaultLanguage" (HKEY_CURRENT_USER\base key), else
// the chooser of the user interface, else German (1); the answer is the
// read of "Language" with that id as default and write-back, so a missing
// value is created. Read afresh on every call: nothing is cached.
int16_t GetCurrentLanguage(LIB& lib, std::u16string_view key);

// The current language as far as it is stored, without asking anyone and
// without writing: "Language", else "DefaultLanguage" (both under
// HKEY_CURRENT_USER and the base key), else 0. For dialogs that only follow the language (the
// toolkit's own ones), so that showing one never brings up the chooser.
int16_t StoredLanguage(LIB& lib);

// GetLanguageList: "langid;name;extension" of each lang element of the
// resource document whose code has a file matching "ResourceDLL" (under
// HKEY_LOCAL_MACHINE\key exactly as given) with "%L" as "??". Bounds 0 to
// count-1; 0 to -1 when nothing matches; one element "" when the document
// has no lang element.
SafeArray GetLanguageList(LIB& lib, std::u16string_view key);

// The file names in the folder of the Windows-style `pattern` that match
// its name part, where "?" is any one character and "*" any run, compared
// without regard to case as the Windows directory search compares. An
// empty pattern, or a folder that cannot be reached, finds nothing.
std::vector<std::u16string> FindMatchingFiles(std::u16string_view pattern);

// Replaces every "%L" in `text` by `code` (case-sensitive).
std::u16string ReplaceLanguageCode(std::u16string text, std::u16string_view code);

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_LANGUAGE_SELECTION_H_
