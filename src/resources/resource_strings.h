// The current language's resource library, opened once for a run of
// string lookups: tklRes opens it for one string, tklLoadFormCaptions for
// every caption of a form.
#ifndef NORVIK50_SRC_RESOURCES_RESOURCE_STRINGS_H_
#define NORVIK50_SRC_RESOURCES_RESOURCE_STRINGS_H_

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/lib.h"
#include "norvik50/resource_module.h"

namespace norvik50 {

// What a resource library that cannot be loaded is reported with.
inline constexpr int32_t kErrResource = -2147221504;  // &H80040000
inline std::u16string LoadLibraryFailed(std::u16string_view path) {
  return u"LoadLibrary '" + std::u16string(path) + u"' failed.";
}

class ResourceStrings {
 public:
  // Opens the library as tklRes does: "ResourceDLL" under
  // HKEY_LOCAL_MACHINE\base key (created empty when missing), "%L"
  // replaced by the current language's code. When it cannot be loaded,
  // every string is absent. The caller has applied its sRegKey already.
  explicit ResourceStrings(LIB& lib);

  // Reports a library that could not be loaded through tklLogError
  // (-2147221504, "LoadLibrary '...' failed.", `source`) with its message
  // box; nothing when it was loaded. Apart from opening, so that a caller
  // busy with a host's widgets can show the box once it is done with them.
  void ReportFailure(LIB& lib, std::u16string_view source) const;

  // String `id` (its low 16 bits, as the string call takes it) as the ANSI
  // string call hands it: through Windows-1252, cut at 32766 characters;
  // nullopt when the library has no such string or none was loaded. The
  // text stays valid until the next Find: most strings are handed out
  // from the library's block as they are, without a copy.
  std::optional<std::u16string_view> Find(int32_t id);

 private:
  std::u16string path_;
  std::unique_ptr<ResourceModule> module_;
  // A library keeps its strings in blocks of sixteen, each a resource of
  // type 6 named by its number: a form's strings mostly share blocks, so
  // each block is read from the library once, as UTF-16 units. nullopt
  // for a block the module does not hand out as a resource (absent, or a
  // host's module that only answers FetchString): its strings are fetched
  // one by one.
  std::map<uint16_t, std::optional<std::u16string>> blocks_;
  // A string the code page changed, or one fetched on its own.
  std::u16string converted_;
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_RESOURCE_STRINGS_H_
