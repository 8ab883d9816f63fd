// Windows-style paths on the Linux file system. Hosts store and pass
// Windows paths ("C:\App\Res.dll"); the members keep Windows rules for
// joining and splitting them, and only where a path meets the real file
// system is it mapped to a Linux one, here.
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <mutex>
#include <string_view>

#include "core/path_lookup.h"
#include "core/windows_path.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"

namespace norvik50 {
namespace {

char16_t UpperLetter(char16_t c) { return (c >= u'a' && c <= u'z') ? c - 32 : c; }
bool IsLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

std::string TrimRoot(std::string root) {
  while (root.size() > 1 && root.back() == '/') root.pop_back();
  return root;
}

// "C=/srv/c;D=/mnt/d" -> {C: /srv/c, D: /mnt/d}; malformed parts are ignored.
void ParseDriveList(std::string_view list, std::map<char16_t, std::string>& roots) {
  while (!list.empty()) {
    const std::size_t end = list.find(';');
    const std::string_view part = list.substr(0, end);
    if (part.size() >= 3 && part[1] == '=' && IsLetter(part[0]) && part[2] == '/') {
      roots[UpperLetter(part[0])] = TrimRoot(std::string(part.substr(2)));
    }
    if (end == std::string_view::npos) break;
    list.remove_prefix(end + 1);
  }
}

struct DriveState {
  std::mutex mutex;
  std::map<char16_t, std::string> roots;
  DriveState() {
    roots[u'Z'] = "/";
    if (const char* env = std::getenv("NORVIK50_DRIVES")) ParseDriveList(env, roots);
  }
};

DriveState& State() {
  static DriveState state;
  return state;
}

std::string CurrentLinuxFolder() {
  char buffer[PATH_MAX];
  if (getcwd(buffer, sizeof buffer) == nullptr) return "/";
  return buffer;
}

std::string BackslashesToSlashes(std::u16string_view text) {
  std::string out = ToUtf8(text);
  for (char& c : out) {
    if (c == '\\') c = '/';
  }
  return out;
}

// The part of a rooted Windows path below its root ("/"-separated), read as
// Windows reads it, by its text alone (AppendNormalizedNames), so that no
// Windows path leaves its drive's root folder.
std::string NormalizeBelowRoot(std::u16string_view rest) {
  std::u16string names;
  if (!AppendNormalizedNames(names, 0, rest) && !names.empty()) names.pop_back();
  return BackslashesToSlashes(names);
}

std::string JoinUnderRoot(const std::string& root, std::string rest) {
  if (!rest.empty() && rest.front() == '/') rest.erase(0, 1);
  if (root == "/") return "/" + rest;
  return rest.empty() ? root : root + "/" + rest;
}

}  // namespace

void SetDriveRoot(char16_t letter, std::string root) {
  if (!IsLetter(letter) || root.empty()) return;
  std::lock_guard lock(State().mutex);
  State().roots[UpperLetter(letter)] = TrimRoot(std::move(root));
}

void ClearDriveRoot(char16_t letter) {
  std::lock_guard lock(State().mutex);
  State().roots.erase(UpperLetter(letter));
}

std::map<char16_t, std::string> DriveRoots() {
  std::lock_guard lock(State().mutex);
  return State().roots;
}

namespace {

// The root of one drive letter, without copying the whole map.
std::optional<std::string> RootOf(char16_t letter) {
  std::lock_guard lock(State().mutex);
  const auto it = State().roots.find(UpperLetter(letter));
  if (it == State().roots.end()) return std::nullopt;
  return it->second;
}

}  // namespace

std::optional<std::string> MapWindowsPath(std::u16string_view path, PathStatus* status) {
  if (status != nullptr) *status = {};
  // The file system ends a name at its first NUL; "/etc/passwd" NUL ".txt"
  // must not name /etc/passwd, so a path with a NUL names no file at all.
  if (path.empty() || path.find(u'\0') != std::u16string_view::npos) return std::nullopt;
  if (path.front() == u'/') {
    // An absolute Linux path is already what the disk calls it.
    std::string linux_path = ToUtf8(path);
    const std::size_t fixed = linux_path.size();
    return FindPathIgnoringCase(std::move(linux_path), fixed, status);
  }
  if (path.size() >= 2 && path[0] == u'\\' && path[1] == u'\\') return std::nullopt;
  std::u16string_view rest = path;
  std::optional<std::string> root;
  if (path.size() >= 2 && path[1] == u':' && IsLetter(path[0])) {
    // "C:file" is relative to the drive's current folder; with one folder
    // per drive root that is the root itself.
    root = RootOf(path[0]);
    rest.remove_prefix(2);
  } else if (path.front() == u'\\') {
    root = RootOf(CurrentFolder().front());
  } else {
    // Relative: looked up from the current folder, and kept relative.
    return FindPathIgnoringCase(BackslashesToSlashes(path), 0, status);
  }
  if (!root) return std::nullopt;
  std::string linux_path = JoinUnderRoot(*root, NormalizeBelowRoot(rest));
  // The root is a Linux folder the host named; only what lies below it is
  // the Windows path's own spelling.
  const std::size_t fixed = *root == "/" ? 1 : root->size() + 1;
  return FindPathIgnoringCase(std::move(linux_path), fixed, status);
}

std::optional<std::string> ToLinuxPath(std::u16string_view path) {
  return MapWindowsPath(path, nullptr);
}

std::optional<std::u16string> ToWindowsPath(std::string_view linux_path) {
  std::string path(linux_path);
  if (path.empty() || path.front() != '/') path = CurrentLinuxFolder() + "/" + path;
  const auto roots = DriveRoots();
  const std::pair<const char16_t, std::string>* best = nullptr;
  for (const auto& entry : roots) {
    const std::string& root = entry.second;
    const bool covers = root == "/" || path == root ||
                        (path.compare(0, root.size(), root) == 0 && path.size() > root.size() &&
                         path[root.size()] == '/');
    if (covers && (best == nullptr || root.size() > best->second.size())) best = &entry;
  }
  if (best == nullptr) return std::nullopt;
  std::string rest = path.substr(best->second == "/" ? 1 : best->second.size());
  if (!rest.empty() && rest.front() == '/') rest.erase(0, 1);
  std::u16string out{best->first, u':', u'\\'};
  for (char16_t c : FromUtf8(rest)) out.push_back(c == u'/' ? u'\\' : c);
  return out;
}

std::u16string CurrentFolder() { return ToWindowsPath(CurrentLinuxFolder()).value_or(u"Z:\\"); }

}  // namespace norvik50
