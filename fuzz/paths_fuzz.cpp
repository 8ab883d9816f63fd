// libFuzzer target for reading Windows paths by their text and for name
// patterns. The input is a path, a base folder and a pattern, separated by
// the byte 0xFF; bytes below 0xC0 pick from the characters paths are made
// of (separators, dots, spaces, colons, letters in both cases), higher ones
// take the next byte with them as any UTF-16 unit, lone surrogates too.
// For every input:
//  - the absolute path normalizes to itself, never keeps a "." or ".."
//    name or an empty one below its root, and is the same with "/" for
//    "\\";
//  - the relative path leads from the base back to the absolute path
//    (names compared without case, as the paths are);
//  - the pattern matches or not without running away; a pattern without
//    wildcards matches exactly the names equal to it but for case.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/name_fold.h"
#include "core/name_pattern.h"
#include "core/windows_path.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

constexpr char16_t kAlphabet[] = {u'\\',     u'/', u'.', u' ',      u':', u'a',      u'B',
                                  u'C',      u'c', u'x', u'*',      u'?', u'\u00C4', u'\u00E4',
                                  u'\u017F', u'S', u's', u'\u212A', u'k', u'\0'};

// The parts of the input, decoded.
struct Parts {
  std::u16string path, base, pattern;
};

Parts Decode(const uint8_t* data, std::size_t size) {
  Parts parts;
  std::u16string* into[] = {&parts.path, &parts.base, &parts.pattern};
  std::size_t part = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const uint8_t b = data[i];
    if (b == 0xFF) {
      if (++part == 3) break;
    } else if (b < 0xC0) {
      into[part]->push_back(kAlphabet[b % std::size(kAlphabet)]);
    } else if (i + 1 < size) {
      into[part]->push_back(static_cast<char16_t>(((b & 0x3F) << 10 | data[++i] << 2) ^ 0xD800));
    }
  }
  return parts;
}

// No "." or ".." and no empty name between the root and the end.
void CheckNoSteps(std::u16string_view absolute) {
  if (absolute.size() < 3 || absolute[1] != u':' || absolute[2] != u'\\') return;
  std::u16string_view rest = absolute.substr(3);
  if (!rest.empty() && rest.back() == u'\\') rest.remove_suffix(1);
  while (!rest.empty()) {
    const std::size_t end = rest.find(u'\\');
    const std::u16string_view name = rest.substr(0, end);
    Check(!name.empty() && name != u"." && name != u"..");
    if (end == std::u16string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size > 4096) return 0;
  const Parts parts = Decode(data, size);
  // A relative base is read from the current folder; a fixed drive keeps
  // the runs independent of where the fuzzer was started.
  const std::u16string base = u"C:\\" + parts.base;

  const std::u16string absolute = norvik50::AbsoluteWindowsPath(parts.path, base);
  Check(parts.path.empty() == absolute.empty());
  Check(norvik50::AbsoluteWindowsPath(absolute, base) == absolute);
  CheckNoSteps(absolute);
  // "/" separates as "\\" does (past the first unit, which would make it
  // a Linux path), whether the names need resolving or not.
  if (!parts.path.empty() && parts.path[0] != u'\\' && parts.path[0] != u'/') {
    std::u16string slashed = parts.path;
    for (std::size_t i = 1; i < slashed.size(); ++i) {
      if (slashed[i] == u'\\') slashed[i] = u'/';
    }
    Check(norvik50::AbsoluteWindowsPath(slashed, base) == absolute);
  }

  const std::u16string relative = norvik50::RelativeWindowsPath(parts.path, base);
  Check(norvik50::FoldName(norvik50::AbsoluteWindowsPath(relative, base)) ==
        norvik50::FoldName(absolute));

  const norvik50::NamePattern pattern(parts.pattern);
  const bool matches_base = pattern.Matches(parts.base);
  if (parts.pattern.find_first_of(u"*?.") == std::u16string::npos) {
    Check(matches_base == (!parts.base.empty() &&
                           norvik50::FoldName(parts.base) == norvik50::FoldName(parts.pattern)));
  }
  Check(norvik50::NamePattern(u"*").Matches(parts.base) == !parts.base.empty());
  return 0;
}
