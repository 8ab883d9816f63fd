// LIB: the folder chooser. With a start folder the library's own form,
// without one the toolkit's folder browser; the form's captions follow the
// current language, and its "new folder" button works through the input
// form and the library's error message, as the members do.
#include <filesystem>
#include <system_error>

#include "core/paths.h"
#include "norvik50/error.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "resources/language_selection.h"

namespace norvik50 {
namespace {

constexpr int32_t kOk = 1;

// Each pair "\\" becomes "\" in one pass from the left, so a path field
// that ends in "\" (a drive's root) joins the name with one separator; a
// run of three keeps two, as a plain replace of the pair leaves it.
std::u16string ReduceDoubledBackslashes(std::u16string path) {
  for (std::size_t at = path.find(u"\\\\"); at != std::u16string::npos;
       at = path.find(u"\\\\", at + 1)) {
    path.erase(at, 1);
  }
  return path;
}

// The runtime's errors for a folder that cannot be made: 76 when the
// folder above it is missing, 75 for everything else (it exists already,
// no permission, a name the file system refuses).
int32_t MakeFolderError(const std::optional<std::string>& linux_path) {
  if (!linux_path) return kErrPathNotFound;
  std::error_code ignored;
  const std::filesystem::path parent = std::filesystem::path(*linux_path).parent_path();
  if (!parent.empty() && !std::filesystem::is_directory(parent, ignored)) return kErrPathNotFound;
  return 75;
}

std::optional<std::u16string> MakeNewFolder(LIB& lib, std::u16string_view parent,
                                            int16_t language) {
  const bool german = language == LANG_GERMAN;
  const InputRequest request = MakeInputRequest(
      german ? u"Name des neuen Ordners:" : u"New folder name:",
      german ? u"Neuen Ordner erstellen" : u"Create new folder", Variant(u""), u"", false, language);
  std::u16string name = request.initial_text;
  if (CurrentUserInterface().ShowInput(request, name) != kOk) return std::nullopt;
  const std::u16string path = ReduceDoubledBackslashes(std::u16string(parent) + u"\\" + name);
  const std::optional<std::string> linux_path = ToLinuxPath(path);
  std::error_code error;
  if (linux_path && std::filesystem::create_directory(*linux_path, error) && !error) return path;
  const int32_t number = MakeFolderError(linux_path);
  lib.tklErrorMsg(number, RuntimeErrorText(number), u"Norvik50.tklChoosePath");
  return std::nullopt;
}

}  // namespace

ChoosePathRequest MakeChoosePathRequest(std::u16string_view start_path,
                                        std::u16string_view caption, int16_t language) {
  const bool german = language == LANG_GERMAN;
  ChoosePathRequest request;
  // Only the controls follow the language; the window keeps the caption
  // it was designed with unless the caller gives one.
  request.title = caption.empty() ? std::u16string(u"Verzeichnis w\u00e4hlen")
                                  : std::u16string(caption);
  request.start_path = start_path;
  for (const auto& [letter, root] : DriveRoots()) request.drives.push_back(letter);
  request.path_label = german ? u"Verzeichnis:" : u"Directory:";
  request.ok_caption = u"OK";
  request.cancel_caption = german ? u"Abbrechen" : u"Cancel";
  request.new_folder_caption = german ? u"&Neuer Ordner..." : u"&New Folder...";
  request.language = language;
  return request;
}

std::u16string LIB::tklChoosePath(std::u16string_view sDefaultPath, std::u16string_view sCaption) {
  try {
    if (sDefaultPath.empty()) {
      return CurrentUserInterface().BrowseForFolder(sCaption, StoredLanguage(*this));
    }
    const std::u16string start = PathIsDirectory(sDefaultPath) != 0
                                     ? std::u16string(sDefaultPath)
                                     : CurrentFolder();
    const int16_t language = GetCurrentLanguage(*this, u"");
    ChoosePathRequest request = MakeChoosePathRequest(start, sCaption, language);
    request.new_folder = [this, language](std::u16string_view parent) {
      return MakeNewFolder(*this, parent, language);
    };
    return CurrentUserInterface().ChoosePath(request);
  } catch (...) {
    // A chooser that cannot be prepared or shown chose nothing.
    return u"";
  }
}

}  // namespace norvik50
