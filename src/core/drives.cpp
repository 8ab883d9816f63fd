// Windows-style paths on the Linux file system. Hosts store and pass
// Windows paths ("C:\App\Res.dll"); the members keep Windows rules for
// joining and splitting them, and only where a path meets the real file
// system is it mapped to a Linux one, here.
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <mutex>

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

std::optional<std::string> ToLinuxPath(std::u16string_view path) {
  if (path.empty()) return std::nullopt;
  if (path.front() == u'/') return ToUtf8(path);
  if (path.size() >= 2 && path[0] == u'\\' && path[1] == u'\\') return std::nullopt;
  const auto roots = DriveRoots();
  if (path.size() >= 2 && path[1] == u':' && IsLetter(path[0])) {
    const auto it = roots.find(UpperLetter(path[0]));
    if (it == roots.end()) return std::nullopt;
    // "C:file" is relative to the drive's current folder; with one folder
    // per drive root that is the root itself.
    return JoinUnderRoot(it->second, BackslashesToSlashes(path.substr(2)));
  }
  if (path.front() == u'\\') {
    const std::u16string current = CurrentFolder();
    const auto it = roots.find(UpperLetter(current.front()));
    if (it == roots.end()) return std::nullopt;
    return JoinUnderRoot(it->second, BackslashesToSlashes(path));
  }
  return BackslashesToSlashes(path);  // relative: the OS resolves it
}

std::optional<std::u16string> ToWindowsPath(std::string_view linux_path) {
  std::string path(linux_path);
  if (path.empty() || path.front() != '/') path = CurrentLinuxFolder() + "/" + path;
  const auto roots = DriveRoots();
  const std::pair<const char16_t, std::string>* best = nullptr;
  for (const auto& entry : roots) {
    const std::string& root = entry.second;
    const bool covers =
        root == "/" || path == root ||
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

std::u16string CurrentFolder() {
  return ToWindowsPath(CurrentLinuxFolder()).value_or(u"Z:\\");
}

}  // namespace norvik50
