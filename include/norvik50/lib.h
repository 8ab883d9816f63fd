// norvik50's chief header: the LIB object.
//
// A host creates one LIB object and calls its members. Creating it starts
// the log file "nvk50err.LOG" in the temporary folder afresh with an
// "<application> initialized." line; destroying it appends
// "<application> terminated.".
//
// Every member follows one of three error styles:
//  - none: a failure throws norvik50::Error (number, description, source);
//  - skip: failing steps are skipped, the member returns what it had;
//  - handler: the member recovers as documented and returns normally.
// Each member's comment names its style and the errors it raises.
//
// Thread safety: a LIB object belongs to the thread that uses it; the
// library-wide base key is shared by all objects of the process and is not
// locked, so hosts with several threads set it once before they start them.
#ifndef NORVIK50_LIB_H_
#define NORVIK50_LIB_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/error.h"
#include "norvik50/export.h"
#include "norvik50/file_info.h"
#include "norvik50/variant.h"

namespace norvik50 {

// The current language (LibLanguageConsts).
enum LibLanguageConsts : int16_t {
  LANG_NEUTRAL = 0,
  LANG_GERMAN = 1,
  LANG_ENGLISH = 2,
  LANG_FRENCH = 3,
  LANG_ITALIC = 4,
  LANG_SPAIN = 5,
};

class NORVIK50_EXPORT LIB {
 public:
  // Writes "<application> initialized." to a fresh nvk50err.LOG.
  LIB();
  // Appends "<application> terminated." to the current log file.
  ~LIB();
  LIB(const LIB&) = delete;
  LIB& operator=(const LIB&) = delete;

  // ---- Library services -------------------------------------------------

  // The Windows folder without a trailing "\" (on Linux: NORVIK50_WINDIR or
  // the installed data folder, as a Windows-style path). Cached on first
  // call for the object's lifetime. Skip style: "" if it cannot be read.
  std::u16string tklSystemDir();
  // The temporary folder (TMPDIR or /tmp, as a Windows-style path), always
  // ending in exactly one "\". Cached on first call. Skip style.
  std::u16string tklTempDir();
  // The library-wide registry base key; "SOFTWARE\VANTEX\Global" while unset.
  std::u16string tklRegKey() const;
  // Sets the base key without any check; "" restores the default.
  void tklRegKey(const std::u16string& value);

  // ---- Log and errors ---------------------------------------------------

  // Writes one time-stamped line to the log. A non-empty sLogFileName
  // becomes the object's log name and truncates that file; otherwise the
  // line is appended to the current log. A name without "\" lies in the
  // temporary folder with ".LOG" added; a bare name already ending in
  // ".LOG" logs nothing. Skip style: never fails.
  void tklLogAction(std::u16string_view sMessage,
                    std::u16string_view sLogFileName = u"");
  // Appends "ERR=n 'desc' (Source=src)" to the log; with bShowMsgBox also
  // shows it through tklErrorMsg. Style none.
  void tklLogError(int32_t lError, std::u16string_view sErrDesc,
                   std::u16string_view sErrSrc, bool bShowMsgBox = false);
  // Shows "Runtime error 'n':" (German: "Laufzeitfehler 'n':") with the
  // description in the standard message dialog. Skip style.
  void tklErrorMsg(int32_t lError, std::u16string_view sErrorDesc,
                   std::u16string_view sErrorSource);

  // ---- Paths and files --------------------------------------------------

  // sPath + "\" + sFile with exactly one "\" between them. Skip style.
  std::u16string tklGetFullPath(std::u16string_view sPath,
                                std::u16string_view sFile);
  // True when sFilename names an existing file (not a folder). Handler style.
  bool tklFileExists(std::u16string_view sFilename);
  // 16 for an existing folder, 0 otherwise (not the Boolean True).
  int16_t tklPathExists(std::u16string_view sPath);
  // Splits sFullName into drive, path, file name and extension. Handler
  // style: False (fields as far as set) when it fails.
  bool tklSeparateFile(std::u16string_view sFullName, typFileInfo& tFileInfo);

  // ---- Text toolkit -----------------------------------------------------
  // (members of the text family are declared in this section)

  // ---- Codecs and named functions ---------------------------------------
  // (tklGlobalVar is declared in this section)

  // ---- State shared with the member families ----------------------------

  // The object's current log file name ("nvk50err" after creation).
  const std::u16string& current_log_name() const noexcept { return log_name_; }

 private:
  std::u16string system_dir_;  // cache of tklSystemDir
  std::u16string temp_dir_;    // cache of tklTempDir
  std::u16string log_name_;    // current log file name
};

}  // namespace norvik50

#endif  // NORVIK50_LIB_H_
