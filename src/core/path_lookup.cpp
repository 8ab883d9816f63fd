#include "core/path_lookup.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>

#include "core/name_fold.h"
#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

bool IsAscii(std::string_view text) {
  for (char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

char AsciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
  }
  return true;
}

bool Stat(const std::string& path, PathStatus* status) {
  struct stat st {};
  const bool found = ::stat(path.c_str(), &st) == 0;
  if (status != nullptr) *status = {found, found && S_ISDIR(st.st_mode)};
  return found;
}

bool EntryExists(const std::string& path) {
  struct stat st {};
  return ::lstat(path.c_str(), &st) == 0;
}

struct DirCloser {
  void operator()(DIR* dir) const { ::closedir(dir); }
};

}  // namespace

std::optional<std::string> FindEntryIgnoringCase(const std::string& folder, std::string_view name) {
  std::unique_ptr<DIR, DirCloser> dir(::opendir(folder.empty() ? "." : folder.c_str()));
  if (!dir) return std::nullopt;
  // Most names are ASCII: comparing their bytes without case needs no
  // conversion. Any other pair goes through the full fold (a non-ASCII
  // entry may fold to an ASCII name, as the Kelvin sign folds to "k").
  const bool ascii = IsAscii(name);
  const std::u16string wanted = FoldName(FromUtf8(name));
  std::optional<std::string> best;
  while (const dirent* entry = ::readdir(dir.get())) {
    const std::string_view candidate(entry->d_name);
    if (candidate == "." || candidate == "..") continue;
    const bool same = ascii && IsAscii(candidate) ? EqualsIgnoringAsciiCase(candidate, name)
                                                  : FoldName(FromUtf8(candidate)) == wanted;
    // The directory's order is arbitrary; the smallest name makes the choice
    // among names that differ only in case the same on every run.
    if (same && (!best || candidate < *best)) best = std::string(candidate);
  }
  return best;
}

std::string FindPathIgnoringCase(std::string path, std::size_t fixed, PathStatus* status) {
  if (Stat(path, status) || fixed >= path.size()) return path;

  // Usually the folder is spelt right and only the file's name differs (or
  // the file is missing): then one listing of that folder settles it.
  std::size_t start = fixed;
  const std::size_t last_slash = path.rfind('/');
  if (last_slash != std::string::npos && last_slash >= fixed && last_slash + 1 < path.size()) {
    PathStatus parent;
    if (Stat(path.substr(0, last_slash == 0 ? 1 : last_slash), &parent) && parent.directory) {
      start = last_slash + 1;
    }
  }

  std::string found = path.substr(0, start);
  bool lost = false;  // a component matched nothing: the rest is kept as given
  for (std::size_t at = start;;) {
    const std::size_t slash = path.find('/', at);
    const std::string_view component =
        std::string_view(path).substr(at, slash == std::string::npos ? path.npos : slash - at);
    if (lost || component.empty() || component == "." || component == "..") {
      found += component;
    } else if (std::string exact = found + std::string(component); EntryExists(exact)) {
      found = std::move(exact);
    } else if (auto entry = FindEntryIgnoringCase(found, component)) {
      found += *entry;
    } else {
      found += component;
      lost = true;
    }
    if (slash == std::string::npos) break;
    found += '/';
    at = slash + 1;
  }
  if (lost) {
    if (status != nullptr) *status = {};
  } else {
    Stat(found, status);
  }
  return found;
}

}  // namespace norvik50
