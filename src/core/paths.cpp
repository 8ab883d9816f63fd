#include "core/paths.h"

#include <unicode/uchar.h>

#include "core/path_lookup.h"
#include "norvik50/host.h"

namespace norvik50 {
namespace {

// UCase of one character; drive letters outside A-Z are rare but legal text.
char16_t ToUpper(char16_t c) { return static_cast<char16_t>(u_toupper(c)); }

// The resolution of the path has looked it up already; its answer is the
// test's answer, so a file test costs one look-up when the path is spelt as
// on disk.
PathStatus StatPath(std::u16string_view path) {
  PathStatus status;
  MapWindowsPath(path, &status);
  return status;
}

}  // namespace

std::u16string GetFullPath(std::u16string_view path, std::u16string_view file) {
  std::u16string joined(path);
  if (joined.empty() || joined.back() != u'\\') joined.push_back(u'\\');
  if (!file.empty() && file.front() == u'\\') file.remove_prefix(1);
  joined.append(file);
  return joined;
}

bool FileExists(std::u16string_view name) {
  const PathStatus status = StatPath(name);
  return status.exists && !status.directory;
}

int16_t PathIsDirectory(std::u16string_view path) {
  return StatPath(path).directory ? kFolderAttribute : 0;
}

bool SplitPath(std::u16string_view full_name, typFileInfo& info) {
  info = typFileInfo{};
  info.lpFullName = full_name;
  std::u16string_view rest = full_name;
  if (const std::size_t slash = full_name.rfind(u'\\'); slash != std::u16string_view::npos) {
    info.lpPath = full_name.substr(0, slash + 1);
    rest = full_name.substr(slash + 1);
  }
  // Only the name after the last "\" is searched for the dot, so a dotted
  // folder never lends its suffix to a file without one.
  if (const std::size_t dot = rest.rfind(u'.'); dot != std::u16string_view::npos) {
    info.lpExt = rest.substr(dot + 1);
    rest = rest.substr(0, dot);
  }
  if (info.lpPath.size() >= 2 && info.lpPath[1] == u':') {
    info.lpDrive = std::u16string(1, ToUpper(info.lpPath[0]));
  } else {
    // Relative and network paths get the current folder's drive.
    const std::u16string current = CurrentFolder();
    if (!current.empty()) info.lpDrive = std::u16string(1, ToUpper(current[0]));
  }
  info.lpFilename = rest;
  return true;
}

}  // namespace norvik50
