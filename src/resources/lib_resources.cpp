// LIB: texts from the current language's resource library.
#include "core/file_dialog_request.h"
#include "core/library_state.h"
#include "core/outside_file.h"
#include "core/paths.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "norvik50/resource_module.h"
#include "resources/language_selection.h"
#include "resources/own_resources.h"
#include "resources/resource_document.h"
#include "resources/resource_strings.h"

namespace norvik50 {
namespace {

// UCase(name) Like "*_??.DLL" on the chosen file name.
bool NamesALanguageLibrary(std::u16string_view name) {
  constexpr std::u16string_view kTail = u".dll";
  if (name.size() < 7 || name[name.size() - 7] != u'_') return false;
  const std::u16string_view tail = name.substr(name.size() - kTail.size());
  for (std::size_t i = 0; i < kTail.size(); ++i) {
    const char16_t c = tail[i];
    if ((c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c) != kTail[i]) return false;
  }
  return true;
}

std::optional<std::u16string> ReadFileAsAnsiText(std::u16string_view path) {
  const auto linux_path = ToLinuxPath(path);
  const auto bytes = linux_path ? ReadOutsideFile(*linux_path) : std::nullopt;
  if (!bytes) return std::nullopt;
  return BytesToText(*bytes);
}

}  // namespace

std::u16string LIB::tklRes(int32_t lResID, std::u16string_view sRegKey) {
  try {
    ApplyRegKey(sRegKey);
    ResourceStrings strings(*this);
    strings.ReportFailure(*this, u"Norvik50.tklRes");
    return std::u16string(strings.Find(lResID).value_or(u""));
  } catch (...) {
    return u"";  // an error pending at the end gives ""
  }
}

std::u16string LIB::tklResource(int32_t lResID, std::u16string_view sResType,
                                std::u16string_view sRegKey) {
  try {
    ApplyRegKey(sRegKey);
    // A developer's file on disk stands in for the library's resource.
    const std::u16string debug_path = ReplaceLanguageCode(
        tkrGetString(HKEY_LOCAL_MACHINE, BaseKey(), u"DebugXML_" + DecimalText(lResID), u"", false),
        tklLangCode(sRegKey));
    if (!debug_path.empty()) {
      const auto text = ReadFileAsAnsiText(debug_path);
      return text ? FromFirstAngleBracket(*text) : u"";
    }

    auto library_path = [&] {
      return ReplaceLanguageCode(
          tkrGetString(HKEY_LOCAL_MACHINE, BaseKey(), u"ResourceDLL", u"", true),
          tklLangCode(sRegKey));
    };
    std::u16string path = library_path();
    if (path.empty()) {
      const int16_t language = GetCurrentLanguage(*this, BaseKey());
      std::u16string chosen;
      // The same dialog as tklFileDialog's: no owner, no initial folder.
      FileDialogRequest request = MakeFileDialogRequest(
          GetResourceItem(u"openresdll", language), GetResourceItem(u"openresdlltitle", language),
          u"", file_dialog_flags::kFileMustExist, 0, u"", true);
      request.language = language;
      if (CurrentUserInterface().ShowFileDialog(request, chosen) && NamesALanguageLibrary(chosen)) {
        // C:\App\Res_DE.dll is stored as C:\App\Res_%L.dll.
        tkrSetValue(HKEY_LOCAL_MACHINE, BaseKey(), u"ResourceDLL",
                    Variant(chosen.substr(0, chosen.size() - 6) + u"%L.dll"));
        path = library_path();
      }
    }
    if (path.empty()) {
      tklLogError(
          kErrResource,
          u"Resourcefile entry 'ResourceDLL' in HKEY_LOCAL_MACHINE\\" + BaseKey() + u" not found.",
          u"Norvik50.tklResource", true);
      return u"";
    }
    if (!FileExists(path)) {
      tklLogError(kErrFileNotFound, u"File not found ('" + path + u"').", u"Norvik50.tklResource",
                  false);
    }
    const auto module = OpenResourceModule(path);
    if (!module) {
      tklLogError(kErrResource, LoadLibraryFailed(path), u"Norvik50.tklResource", true);
      return u"";
    }
    const auto bytes = module->FetchResource(sResType, u"#" + DecimalText(lResID));
    return FromFirstAngleBracket(bytes ? BytesToText(*bytes) : u"");
  } catch (...) {
    return u"";
  }
}

}  // namespace norvik50
