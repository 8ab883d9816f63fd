#include "core/windows_path.h"

#include <filesystem>
#include <optional>

#include "core/name_fold.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"

namespace norvik50 {
namespace {

bool IsSeparator(char16_t c) { return c == u'\\' || c == u'/'; }
bool IsLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

enum class RootKind {
  kDrive,         // "C:\a", also "C:a": the root is the drive's
  kShare,         // "\\server\share\a"
  kRootRelative,  // "\a": the root of the base's drive
  kRelative,      // "a\b": below the base folder
  kLinux,         // "/a/b": a Linux path, placed by the drive map
};

struct SplitRoot {
  RootKind kind;
  std::u16string_view root;  // "C:" or "\\server\share" as written
  std::u16string_view rest;  // what lies below the root
};

// "\\server\share\rest": the share's root is its first two names; further
// separators between them count once, as everywhere in a path.
SplitRoot SplitShare(std::u16string_view path) {
  std::size_t at = 2;
  for (int name = 0; name < 2; ++name) {
    while (at < path.size() && IsSeparator(path[at])) ++at;
    while (at < path.size() && !IsSeparator(path[at])) ++at;
  }
  return {RootKind::kShare, path.substr(0, at), path.substr(at)};
}

SplitRoot Split(std::u16string_view path) {
  if (path.front() == u'/') return {RootKind::kLinux, {}, path};
  if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1])) return SplitShare(path);
  if (path.size() >= 2 && path[1] == u':' && IsLetter(path[0])) {
    return {RootKind::kDrive, path.substr(0, 2), path.substr(2)};
  }
  if (IsSeparator(path.front())) return {RootKind::kRootRelative, {}, path};
  return {RootKind::kRelative, {}, path};
}

// The root as an absolute path begins: "C:\" or "\\server\share\", with
// one "\" between the names of a share however many separated them.
void AppendRoot(std::u16string& out, std::u16string_view root) {
  if (root.size() == 2 && root[1] == u':') {
    out.append(root);
    out.push_back(u'\\');
    return;
  }
  // The server's and the share's names are taken as they are: "." or ".."
  // there is a name, not a step.
  const std::size_t start = out.size();
  out.append(u"\\\\");
  bool gap = false;
  for (char16_t c : root.substr(2)) {
    if (IsSeparator(c)) {
      gap = true;
    } else {
      if (gap && out.size() > start + 2) out.push_back(u'\\');
      gap = false;
      out.push_back(c);
    }
  }
  // "\\" alone has no names to end; it already ends in a separator.
  if (out.size() > start + 2) out.push_back(u'\\');
}

// An absolute path under construction: every name is followed by "\", and
// the first `floor` units are the root (ending in "\").
struct Built {
  std::u16string text;
  std::size_t floor = 0;
  bool folder = false;
  bool absolute = true;  // false: a Linux path no drive covers, kept as given
};

// A Linux path in the form the drive map gives it. Its "." and ".." are
// Linux's to resolve before the drive is chosen: "/srv/c/../d" is not on a
// drive rooted at /srv/c.
std::optional<std::u16string> LinuxToWindows(std::u16string_view path) {
  const std::string normal = std::filesystem::path(ToUtf8(path)).lexically_normal().string();
  return ToWindowsPath(normal);
}

Built Build(std::u16string_view path, std::u16string_view base);

// The base folder, absolute: the current folder when empty.
Built BuildBase(std::u16string_view base) {
  if (base.empty()) return Build(CurrentFolder(), u"");
  return Build(base, u"");
}

Built Build(std::u16string_view path, std::u16string_view base) {
  const SplitRoot split = Split(path);
  Built built;
  switch (split.kind) {
    case RootKind::kDrive:
    case RootKind::kShare:
      built.text.reserve(path.size() + 2);
      AppendRoot(built.text, split.root);
      built.floor = built.text.size();
      break;
    case RootKind::kLinux: {
      const std::optional<std::u16string> windows = LinuxToWindows(path);
      if (!windows || windows->empty() || windows->front() == u'/') {
        built.text = path;
        built.absolute = false;
        return built;
      }
      return Build(*windows, u"");
    }
    case RootKind::kRootRelative:
      built = BuildBase(base);
      if (!built.absolute) return built;
      built.text.resize(built.floor);
      break;
    case RootKind::kRelative:
      built = BuildBase(base);
      if (!built.absolute) return built;
      break;
  }
  built.folder = AppendNormalizedNames(built.text, built.floor, split.rest);
  return built;
}

// The built path as a caller sees it: the last name without its "\"
// unless the path named a folder; a root keeps its "\".
std::u16string Finish(Built built) {
  if (built.absolute && !built.folder && built.text.size() > built.floor) built.text.pop_back();
  return std::move(built.text);
}

bool SameText(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && FoldNameUnit(a[i]) != FoldNameUnit(b[i])) return false;
  }
  return true;
}

// The next name of a built path from `at` (each name ends in "\").
std::u16string_view NameAt(const std::u16string& text, std::size_t at) {
  return std::u16string_view(text).substr(at, text.find(u'\\', at) - at);
}

// Where the last name of a path under construction (each name followed by
// "\\") begins; never inside the first `floor` units.
std::size_t StartOfLastName(const std::u16string& out, std::size_t floor) {
  const std::size_t cut = out.rfind(u'\\', out.size() - 2);
  return cut == std::u16string::npos || cut + 1 < floor ? floor : cut + 1;
}

}  // namespace

bool AppendNormalizedNames(std::u16string& out, std::size_t floor, std::u16string_view rest) {
  const bool folder = !rest.empty() && IsSeparator(rest.back());
  for (std::size_t at = 0; at <= rest.size();) {
    std::size_t end = at;
    while (end < rest.size() && !IsSeparator(rest[end])) ++end;
    std::u16string_view name = rest.substr(at, end - at);
    at = end + 1;
    if (name == u"..") {
      // Back to the separator before the last name, but not into the root.
      if (out.size() > floor) out.resize(StartOfLastName(out, floor));
      continue;
    }
    if (name.empty() || name == u".") continue;
    // One trailing dot goes; "..." and longer runs are names of their own.
    if (name.back() == u'.' && name[name.size() - 2] != u'.') name.remove_suffix(1);
    out.append(name);
    out.push_back(u'\\');
  }
  // The name the path ends in loses its trailing dots and spaces, and goes
  // when nothing is left of it; whichever name that leaves last is read the
  // same way, so that a normalized path normalizes to itself. A folder path
  // ("a. \") keeps them.
  while (!folder && out.size() > floor) {
    const std::size_t start = StartOfLastName(out, floor);
    std::size_t keep = out.size() - 1;
    while (keep > start && (out[keep - 1] == u'.' || out[keep - 1] == u' ')) --keep;
    if (keep == out.size() - 1) break;
    out.resize(keep);
    if (keep > start) {
      out.push_back(u'\\');
      break;
    }
  }
  return folder;
}

std::u16string AbsoluteWindowsPath(std::u16string_view path, std::u16string_view base) {
  if (path.empty()) return {};
  return Finish(Build(path, base));
}

std::u16string RelativeWindowsPath(std::u16string_view path, std::u16string_view base) {
  if (path.empty()) return {};
  Built target = Build(path, base);
  const Built from = BuildBase(base);
  if (!target.absolute || !from.absolute ||
      !SameText(std::u16string_view(target.text).substr(0, target.floor),
                std::u16string_view(from.text).substr(0, from.floor))) {
    return Finish(std::move(target));
  }
  // Walk both down from the root while their names agree.
  std::size_t t = target.floor, f = from.floor;
  while (t < target.text.size() && f < from.text.size()) {
    const std::u16string_view a = NameAt(target.text, t), b = NameAt(from.text, f);
    if (!SameText(a, b)) break;
    t += a.size() + 1;
    f += b.size() + 1;
  }
  std::u16string relative;
  relative.reserve(target.text.size() - t + 3 * (from.text.size() - f) / 2 + 2);
  for (; f < from.text.size(); f = from.text.find(u'\\', f) + 1) relative.append(u"..\\");
  // A path below the base starts with ".\", so that a first name such as
  // "x:y" is never read as a drive.
  if (relative.empty()) relative.append(u".\\");
  relative.append(std::u16string_view(target.text).substr(t));
  if (!target.folder) relative.pop_back();
  return relative;
}

std::u16string_view LastPathName(std::u16string_view absolute_path) {
  if (absolute_path.empty()) return {};
  const SplitRoot split = Split(absolute_path);
  std::u16string_view rest = split.rest;
  while (!rest.empty() && IsSeparator(rest.back())) rest.remove_suffix(1);
  std::size_t start = rest.size();
  while (start > 0 && !IsSeparator(rest[start - 1])) --start;
  return rest.substr(start);
}

}  // namespace norvik50
