#include "settings/registry_names.h"

#include <array>

#include "norvik50/encoding.h"
#include "norvik50/registry.h"

namespace norvik50::settings {
namespace {

struct RootName {
  int32_t root;
  std::u16string_view long_name;
  std::u16string_view short_name;
};

constexpr std::array<RootName, 7> kRoots{{
    {HKEY_CLASSES_ROOT, u"HKEY_CLASSES_ROOT", u"HKCR"},
    {HKEY_CURRENT_USER, u"HKEY_CURRENT_USER", u"HKCU"},
    {HKEY_LOCAL_MACHINE, u"HKEY_LOCAL_MACHINE", u"HKLM"},
    {HKEY_USERS, u"HKEY_USERS", u"HKU"},
    {HKEY_PERFORMANCE_DATA, u"HKEY_PERFORMANCE_DATA", u""},
    {HKEY_CURRENT_CONFIG, u"HKEY_CURRENT_CONFIG", u"HKCC"},
    {HKEY_DYN_DATA, u"HKEY_DYN_DATA", u""},
}};

bool EqualsIgnoringAsciiCase(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char16_t x = a[i], y = b[i];
    if (x >= u'a' && x <= u'z') x = static_cast<char16_t>(x - 32);
    if (y >= u'a' && y <= u'z') y = static_cast<char16_t>(y - 32);
    if (x != y) return false;
  }
  return true;
}

}  // namespace

std::string FoldedUtf8(std::u16string_view name) {
  std::string folded(name.size(), '\0');
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char16_t c = name[i];
    // The common all-ASCII name is folded and encoded in one pass.
    if (c >= 0x80) return ToUtf8(FoldName(name));
    folded[i] = static_cast<char>(c >= u'A' && c <= u'Z' ? c + 32 : c);
  }
  return folded;
}

std::optional<std::vector<std::u16string>> SplitKeyPath(std::u16string_view path) {
  std::vector<std::u16string> names;
  if (!path.empty() && path.back() == u'\\') path.remove_suffix(1);
  if (path.empty()) return names;
  std::size_t start = 0;
  while (true) {
    const std::size_t end = path.find(u'\\', start);
    const std::u16string_view name =
        path.substr(start, end == std::u16string_view::npos ? path.npos : end - start);
    if (name.empty() || name.size() > kMaxKeyNameLength) return std::nullopt;
    names.emplace_back(name);
    if (end == std::u16string_view::npos) break;
    start = end + 1;
  }
  return names;
}

std::optional<std::string> FoldedKeyPath(std::u16string_view path) {
  if (!path.empty() && path.back() == u'\\') path.remove_suffix(1);
  if (path.empty()) return std::string();
  // The same rules as SplitKeyPath, without a list of names. Folding works
  // on each unit alone and keeps the separator, so folding the whole path
  // folds every name in it.
  std::size_t length = 0;
  for (const char16_t c : path) {
    if (c != u'\\') {
      if (++length > kMaxKeyNameLength) return std::nullopt;
      continue;
    }
    if (length == 0) return std::nullopt;
    length = 0;
  }
  if (length == 0) return std::nullopt;
  return FoldedUtf8(path);
}

std::u16string_view RootKeyName(int32_t root) {
  for (const RootName& r : kRoots) {
    if (r.root == root) return r.long_name;
  }
  return {};
}

std::optional<int32_t> ParseRootKeyName(std::u16string_view name) {
  for (const RootName& r : kRoots) {
    if (EqualsIgnoringAsciiCase(name, r.long_name) ||
        (!r.short_name.empty() && EqualsIgnoringAsciiCase(name, r.short_name))) {
      return r.root;
    }
  }
  return std::nullopt;
}

std::optional<std::pair<int32_t, std::u16string>> SplitFullKeyName(std::u16string_view text) {
  const std::size_t slash = text.find(u'\\');
  const auto root = ParseRootKeyName(text.substr(0, slash));
  if (!root) return std::nullopt;
  std::u16string rest = slash == std::u16string_view::npos ? std::u16string()
                                                           : std::u16string(text.substr(slash + 1));
  return std::make_pair(*root, std::move(rest));
}

}  // namespace norvik50::settings
