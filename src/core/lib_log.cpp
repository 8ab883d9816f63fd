// LIB: the log file and error reporting.
#include <unicode/uchar.h>

#include "core/library_state.h"
#include "core/log_file.h"
#include "core/paths.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"

namespace norvik50 {
namespace {

constexpr std::u16string_view kFallbackLogName = u"nvk40err";

// UCase(name) Like "*.LOG".
bool EndsWithLogExtension(std::u16string_view name) {
  constexpr std::u16string_view kExt = u".LOG";
  if (name.size() < kExt.size()) return false;
  const std::u16string_view tail = name.substr(name.size() - kExt.size());
  for (std::size_t i = 0; i < kExt.size(); ++i) {
    if (static_cast<char16_t>(u_toupper(tail[i])) != kExt[i]) return false;
  }
  return true;
}

}  // namespace

void LIB::tklLogAction(std::u16string_view sMessage, std::u16string_view sLogFileName) {
  try {
    const bool named = !sLogFileName.empty();
    if (named) log_name_ = sLogFileName;
    // Only reachable if creation did not set a name; kept as the old default.
    if (log_name_.empty()) log_name_ = kFallbackLogName;

    std::u16string path;
    if (log_name_.find(u'\\') == std::u16string::npos) {
      // A bare name that already ends in ".LOG" leaves the file name empty,
      // so the path names the temporary folder itself and nothing is
      // written. Hosts rely on this to switch logging off; keep it.
      const std::u16string file = EndsWithLogExtension(log_name_) ? u"" : log_name_ + u".LOG";
      path = tklGetFullPath(tklTempDir(), file);
    } else {
      path = log_name_;  // a full path, used as it stands
    }
    const auto linux_path = ToLinuxPath(path);
    if (!linux_path) return;
    WriteLogBytes(*linux_path, FormatLogLine(sMessage, Date::Now().ToCivil()), named);
  } catch (...) {
    // Logging never fails towards the caller.
  }
}

void LIB::tklLogError(int32_t lError, std::u16string_view sErrDesc, std::u16string_view sErrSrc,
                      bool bShowMsgBox) {
  tklLogAction(FormatErrorLine(lError, sErrDesc, sErrSrc), u"");
  if (bShowMsgBox) tklErrorMsg(lError, sErrDesc, sErrSrc);
}

void LIB::tklErrorMsg(int32_t lError, std::u16string_view sErrorDesc,
                      std::u16string_view sErrorSource) {
  try {
    const std::u16string number = ErrorNumberText(lError);
    const std::u16string heading = MessageLanguage(*this) == LANG_GERMAN
                                       ? u"Laufzeitfehler '" + number + u"':"
                                       : u"Runtime error '" + number + u"':";
    ShowErrorMessage(*this, heading, sErrorDesc, sErrorSource);
  } catch (...) {
    // Skip style: a dialog that cannot be shown is not the caller's problem.
  }
}

}  // namespace norvik50
