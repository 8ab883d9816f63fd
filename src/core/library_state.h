// State shared by all LIB objects of the process, and the hooks through
// which later layers complete what the core layer starts.
#ifndef NORVIK50_SRC_CORE_LIBRARY_STATE_H_
#define NORVIK50_SRC_CORE_LIBRARY_STATE_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace norvik50 {

class LIB;

// The registry base key, shared by every LIB object of the process (hosts
// with several threads set it once, before they start them).
inline constexpr std::u16string_view kDefaultBaseKey = u"SOFTWARE\\VANTEX\\Global";
// The stored base key; the default while it is empty.
std::u16string BaseKey();
// Stores `key` without any check; "" restores the default at the next read.
void SetBaseKey(std::u16string_view key);
// Members with an optional sRegKey make a non-empty one the base key.
inline void ApplyRegKey(std::u16string_view key) {
  if (!key.empty()) SetBaseKey(key);
}

// The language of the library's own messages (LibLanguageConsts). Until a
// language selection is installed, English.
int16_t MessageLanguage(LIB& lib);
void SetMessageLanguageSource(std::function<int16_t(LIB&)> source);

// How an error message reaches the screen. The dialog layer installs the
// standard message box (tklMsgBox); until it is linked in, the user
// interface's plain standard message shows it.
using ErrorMessageShow = std::function<void(LIB& lib, std::u16string_view heading,
                                            std::u16string_view detail, std::u16string_view title)>;
void ShowErrorMessage(LIB& lib, std::u16string_view heading, std::u16string_view detail,
                      std::u16string_view title);
void SetErrorMessageShow(ErrorMessageShow show);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_LIBRARY_STATE_H_
