#include "resources/language_selection.h"

#include <unicode/uchar.h>

#include <filesystem>
#include <system_error>

#include "core/library_state.h"
#include "core/paths.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "resources/resource_document.h"
#include "resources/xml_impl.h"

namespace norvik50 {
namespace {

constexpr int16_t kNotSet = -1;

char16_t Fold(char16_t c) { return static_cast<char16_t>(u_toupper(c)); }

// The Windows directory search's wildcards, without regard to case.
bool Matches(std::u16string_view name, std::u16string_view pattern) {
  std::size_t n = 0, p = 0, star = std::u16string_view::npos, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      star = p++;
      resume = n;
    } else if (p < pattern.size() && (pattern[p] == u'?' || Fold(pattern[p]) == Fold(name[n]))) {
      ++p;
      ++n;
    } else if (star != std::u16string_view::npos) {
      p = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
}

std::u16string ReplaceAll(std::u16string text, std::u16string_view from, std::u16string_view to) {
  for (std::size_t at = text.find(from); at != std::u16string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// The message headings follow the user's language once the resource layer
// is linked in.
const bool kMessageLanguageInstalled = [] {
  SetMessageLanguageSource([](LIB& lib) { return GetCurrentLanguage(lib, u""); });
  return true;
}();

}  // namespace

std::u16string ReplaceLanguageCode(std::u16string text, std::u16string_view code) {
  return ReplaceAll(std::move(text), u"%L", code);
}

int16_t GetCurrentLanguage(LIB& lib, std::u16string_view key) {
  ApplyRegKey(key);
  const std::u16string base = BaseKey();
  int16_t language = lib.tkrGetInteger(HKEY_CURRENT_USER, base, u"Language", kNotSet, false);
  // A stored "Language" is what the closing write-back read would return
  // unchanged; reading it once is enough. Only a missing one (or a stored
  // -1) goes on to the default, the chooser and the write-back.
  if (language != kNotSet) return language;
  language = lib.tkrGetInteger(HKEY_CURRENT_USER, base, u"DefaultLanguage", kNotSet, false);
  if (language == kNotSet) {
    std::vector<std::u16string> entries;
    const SafeArray list = GetLanguageList(lib, base);
    for (const Variant& entry : list.items()) {
      entries.push_back(entry.as_string());
    }
    language = CurrentUserInterface().ChooseLanguage(entries);
    if (language == kNotSet) language = LANG_GERMAN;
  }
  return lib.tkrGetInteger(HKEY_CURRENT_USER, base, u"Language", language, true);
}

int16_t StoredLanguage(LIB& lib) {
  const std::u16string base = BaseKey();
  for (const char16_t* name : {u"Language", u"DefaultLanguage"}) {
    const int16_t language = lib.tkrGetInteger(HKEY_CURRENT_USER, base, name, kNotSet, false);
    if (language != kNotSet) return language;
  }
  return 0;
}

std::vector<std::u16string> FindMatchingFiles(std::u16string_view pattern) {
  std::vector<std::u16string> found;
  if (pattern.empty()) return found;
  // The folder is everything up to the last "\"; a bare name lies in the
  // current folder.
  const std::size_t last = pattern.rfind(u'\\');
  const std::u16string_view name_pattern =
      last == std::u16string_view::npos ? pattern : pattern.substr(last + 1);
  const std::u16string folder(last == std::u16string_view::npos ? u"."
                                                                : pattern.substr(0, last + 1));
  const auto linux_folder = ToLinuxPath(folder);
  if (!linux_folder || name_pattern.empty()) return found;
  std::error_code error;
  for (std::filesystem::directory_iterator it(*linux_folder, error), end; !error && it != end;
       it.increment(error)) {
    if (!it->is_regular_file(error)) continue;
    const std::u16string name = FromUtf8(it->path().filename().string());
    if (Matches(name, name_pattern)) found.push_back(name);
  }
  return found;
}

SafeArray GetLanguageList(LIB& lib, std::u16string_view key) {
  XmlDocument& document = ResourceDocument();
  const std::u16string pattern = ReplaceAll(
      lib.tkrGetString(HKEY_LOCAL_MACHINE, key, u"ResourceDLL", u"", false), u"%L", u"??");

  // The code stands where "??" stands in the file name (extension
  // included); each found file contributes its two characters there.
  std::u16string codes = u"|";
  typFileInfo parts;
  if (!pattern.empty() && SplitPath(pattern, parts)) {
    const std::u16string file = parts.lpFilename + u"." + parts.lpExt;
    const std::size_t at = file.find(u"??");
    if (at != std::u16string::npos) {
      for (const std::u16string& name : FindMatchingFiles(pattern)) {
        std::u16string code = name.substr(std::min(at, name.size()), 2);
        for (char16_t& c : code) c = Fold(c);
        codes += code + u"|";
      }
    }
  }

  const pugi::xpath_node_set nodes = SelectAll(document, u"/resources/lang");
  if (nodes.empty()) return SafeArray(0, {Variant(u"")}, VarType::kString);
  std::vector<Variant> entries;
  for (const pugi::xpath_node& node : nodes) {
    const std::u16string extension = GetXMLAttribute(node.node(), u"extension");
    if (codes.find(u"|" + extension + u"|") == std::u16string::npos) continue;
    entries.emplace_back(GetXMLAttribute(node.node(), u"langid") + u";" +
                         GetXMLAttribute(node.node(), u"name") + u";" + extension);
  }
  return SafeArray(0, std::move(entries), VarType::kString);
}

}  // namespace norvik50
