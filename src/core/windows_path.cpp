#include "core/windows_path.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "core/name_fold.h"
#include "core/path_text.h"
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
void AppendRoot(PathText& out, std::u16string_view root) {
  out.Reserve(out.size() + root.size() + 1);
  if (root.size() == 2 && root[1] == u':') {
    out.Append(root);
    out.PushBack(u'\\');
    return;
  }
  // The server's and the share's names are taken as they are: "." or ".."
  // there is a name, not a step.
  const std::size_t start = out.size();
  out.Append(u"\\\\");
  bool gap = false;
  for (char16_t c : root.substr(2)) {
    if (IsSeparator(c)) {
      gap = true;
    } else {
      if (gap && out.size() > start + 2) out.PushBack(u'\\');
      gap = false;
      out.PushBack(c);
    }
  }
  // "\\" alone has no names to end; it already ends in a separator.
  if (out.size() > start + 2) out.PushBack(u'\\');
}

// Where the last name of a path under construction (each name followed by
// "\") begins, for a text of `size` units; never inside the first `floor`.
std::size_t StartOfLastName(const char16_t* text, std::size_t size, std::size_t floor) {
  std::size_t at = size - 1;  // the last name's own "\"
  while (at > floor && text[at - 1] != u'\\') --at;
  return at;
}

// The name the path ends in loses its trailing dots and spaces, and goes
// when nothing is left of it; whichever name that leaves last is read the
// same way, so that a normalized path normalizes to itself. Returns the new
// size of `text`.
std::size_t TrimLastName(char16_t* text, std::size_t size, std::size_t floor) {
  while (size > floor && (text[size - 2] == u'.' || text[size - 2] == u' ')) {
    const std::size_t start = StartOfLastName(text, size, floor);
    std::size_t keep = size - 1;
    while (keep > start && (text[keep - 1] == u'.' || text[keep - 1] == u' ')) --keep;
    size = keep;
    if (keep > start) {
      text[size++] = u'\\';
      break;
    }
  }
  return size;
}

// True when the names of `rest` stand as they are written: separated by
// single "\", none starting with a dot or ending in one, the last one not
// ending in a space either and no separator after it. Nearly every stored
// path is written so, and then its names are its text. Eight units at a
// time where the processor allows.
bool NamesArePlain(std::u16string_view rest) {
  const std::size_t count = rest.size();
  if (count == 0 || rest[0] == u'.') return false;
  const char16_t last = rest[count - 1];
  if (last == u'\\' || last == u'/' || last == u'.' || last == u' ') return false;
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i backslash = _mm_set1_epi16(u'\\');
  const __m128i dot = _mm_set1_epi16(u'.');
  for (; i + 9 <= count; i += 8) {
    const __m128i unit = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rest.data() + i));
    const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rest.data() + i + 1));
    const __m128i separator = _mm_cmpeq_epi16(unit, backslash);
    const __m128i separator_next = _mm_cmpeq_epi16(next, backslash);
    // "/", "\\", "\." and ".\" all need the full reading.
    const __m128i odd = _mm_or_si128(
        _mm_cmpeq_epi16(unit, _mm_set1_epi16(u'/')),
        _mm_or_si128(
            _mm_and_si128(separator, _mm_or_si128(separator_next, _mm_cmpeq_epi16(next, dot))),
            _mm_and_si128(_mm_cmpeq_epi16(unit, dot), separator_next)));
    if (_mm_movemask_epi8(odd) != 0) return false;
  }
#endif
  for (; i + 1 < count; ++i) {
    const char16_t unit = rest[i], next = rest[i + 1];
    if (unit == u'/' || (unit == u'\\' && (next == u'\\' || next == u'.')) ||
        (unit == u'.' && next == u'\\')) {
      return false;
    }
  }
  return true;
}

// Appends the names of `rest` to `out` by the rules of AppendNormalizedNames.
// The units are copied as they come, eight at a time where the processor
// allows, and each name is judged when its separator is found; a name that
// stands as it was copied (nearly all of them) costs nothing more, so
// reading a path costs little more than copying it.
bool AppendNames(PathText& out, std::size_t floor, std::u16string_view rest) {
  if (NamesArePlain(rest)) {
    const std::u16string_view names = rest[0] == u'\\' ? rest.substr(1) : rest;
    out.Reserve(out.size() + names.size() + 1);
    out.Append(names);
    out.PushBack(u'\\');
    return false;
  }
  // Each name gains at most one "\" (the last one's), and a block of eight
  // may be stored past the end.
  out.Reserve(out.size() + rest.size() + 1 + 8);
  char16_t* const text = out.data();
  const char16_t* const in = rest.data();
  const std::size_t count = rest.size();
  std::size_t size = out.size();  // the text before the current name
  std::size_t name = 0;           // where the current name begins in `rest`

  // Ends the name rest[name, separator), copied to text[size, ...). True
  // when it stands as copied, its separator written as "\", so that what
  // was copied after it stands too.
  auto end_name = [&](std::size_t separator) {
    const std::size_t length = separator - name;
    name = separator + 1;
    if (length == 0) return false;  // repeated separators count once
    const char16_t* const copied = text + size;
    if (copied[0] == u'.' && (length == 1 || (length == 2 && copied[1] == u'.'))) {
      // "..": back to the name before, but not into the root.
      if (length == 2 && size > floor) size = StartOfLastName(text, size, floor);
      return false;
    }
    // One trailing dot goes; "..." and longer runs are names of their own.
    const bool dot = length >= 2 && copied[length - 1] == u'.' && copied[length - 2] != u'.';
    size += length - (dot ? 1 : 0);
    text[size++] = u'\\';
    return !dot;
  };

  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i backslash = _mm_set1_epi16(u'\\');
  const __m128i slash = _mm_set1_epi16(u'/');
  while (i + 8 <= count) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(text + size + (i - name)), units);
    unsigned hits = static_cast<unsigned>(_mm_movemask_epi8(
        _mm_or_si128(_mm_cmpeq_epi16(units, backslash), _mm_cmpeq_epi16(units, slash))));
    const std::size_t block = i;
    i += 8;
    while (hits != 0) {
      const unsigned bit = static_cast<unsigned>(__builtin_ctz(hits));
      hits &= ~(3u << bit);  // two mask bits per unit
      const std::size_t separator = block + bit / 2;
      if (!end_name(separator)) {
        // What was copied after it must move: copy again from there.
        i = separator + 1;
        break;
      }
    }
  }
#endif
  for (; i < count; ++i) {
    if (IsSeparator(in[i])) {
      end_name(i);
    } else {
      text[size + (i - name)] = in[i];
    }
  }
  end_name(count);
  const bool folder = count != 0 && IsSeparator(in[count - 1]);
  // A folder path ("a. \") keeps the dots and spaces of its last name.
  out.set_size(folder ? size : TrimLastName(text, size, floor));
  return folder;
}

// An absolute path under construction: every name is followed by "\", and
// the first `floor` units are the root (ending in "\").
struct Built {
  PathText text;
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

void Build(Built& built, std::u16string_view path, std::u16string_view base);

// The base folder, absolute: the current folder when empty.
void BuildBase(Built& built, std::u16string_view base) {
  if (base.empty()) {
    Build(built, CurrentFolder(), u"");
  } else {
    Build(built, base, u"");
  }
}

void Build(Built& built, std::u16string_view path, std::u16string_view base) {
  const SplitRoot split = Split(path);
  switch (split.kind) {
    case RootKind::kDrive:
    case RootKind::kShare:
      AppendRoot(built.text, split.root);
      built.floor = built.text.size();
      break;
    case RootKind::kLinux: {
      const std::optional<std::u16string> windows = LinuxToWindows(path);
      if (!windows || windows->empty() || windows->front() == u'/') {
        built.text.Append(path);
        built.absolute = false;
        return;
      }
      Build(built, *windows, u"");
      return;
    }
    case RootKind::kRootRelative:
      BuildBase(built, base);
      if (!built.absolute) return;
      built.text.set_size(built.floor);
      break;
    case RootKind::kRelative:
      BuildBase(built, base);
      if (!built.absolute) return;
      break;
  }
  built.folder = AppendNames(built.text, built.floor, split.rest);
}

// The built path as a caller sees it: the last name without its "\"
// unless the path named a folder; a root keeps its "\".
std::u16string_view Finished(const Built& built) {
  std::u16string_view text = built.text.view();
  if (built.absolute && !built.folder && text.size() > built.floor) text.remove_suffix(1);
  return text;
}

}  // namespace

bool AppendNormalizedNames(std::u16string& out, std::size_t floor, std::u16string_view rest) {
  PathText text;
  text.Append(out);
  const bool folder = AppendNames(text, floor, rest);
  out.assign(text.view());
  return folder;
}

std::u16string AbsoluteWindowsPath(std::u16string_view path, std::u16string_view base) {
  if (path.empty()) return {};
  Built built;
  Build(built, path, base);
  return std::u16string(Finished(built));
}

std::u16string RelativeWindowsPath(std::u16string_view path, std::u16string_view base) {
  if (path.empty()) return {};
  Built target, from;
  Build(target, path, base);
  BuildBase(from, base);
  const std::u16string_view to_text = target.text.view(), from_text = from.text.view();
  if (!target.absolute || !from.absolute ||
      !SameNameWithoutCase(to_text.substr(0, target.floor), from_text.substr(0, from.floor))) {
    return std::u16string(Finished(target));
  }
  // The units both share from the root (equal, or equal but for case);
  // the names they share end at the last "\" among them.
  const std::u16string_view to_names = to_text.substr(target.floor);
  const std::u16string_view from_names = from_text.substr(from.floor);
  const std::size_t limit = std::min(to_names.size(), from_names.size());
  std::size_t shared = 0;
  while (shared < limit) {
    while (shared < limit && to_names[shared] == from_names[shared]) ++shared;
    if (shared == limit || FoldNameUnit(to_names[shared]) != FoldNameUnit(from_names[shared])) {
      break;
    }
    ++shared;
  }
  const std::size_t last = to_names.substr(0, shared).rfind(u'\\');
  const std::size_t names = last == std::u16string_view::npos ? 0 : last + 1;
  const std::size_t t = target.floor + names, f = from.floor + names;
  std::size_t ups = 0;
  for (std::size_t at = f; at < from_text.size(); ++at) ups += from_text[at] == u'\\' ? 1 : 0;
  std::u16string_view below = to_text.substr(t);
  if (!target.folder && !below.empty()) below.remove_suffix(1);
  std::u16string relative;
  // A path below the base starts with ".\", so that a first name such as
  // "x:y" is never read as a drive.
  const std::size_t prefix = ups == 0 ? 2 : 3 * ups;
  relative.reserve(prefix + below.size());
  if (ups == 0) relative.append(u".\\");
  for (std::size_t i = 0; i < ups; ++i) relative.append(u"..\\");
  relative.append(below);
  // The folder itself: "." (".\" when asked as a folder), "..", "..\".
  if (below.empty() && !target.folder) relative.pop_back();
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
