// The resource-library seam: how tklRes and tklResource reach a language's
// resource library. The library's own implementation reads real Windows
// resource DLLs (PE32 and PE32+) natively: it maps the file, walks only
// the resource directory a lookup needs and copies one string or resource.
// A host that keeps its texts elsewhere installs its own opener.
//
// Thread safety: opening and using separate modules from several threads
// is safe; installing an opener is not synchronised with its use.
#ifndef NORVIK50_RESOURCE_MODULE_H_
#define NORVIK50_RESOURCE_MODULE_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/export.h"

namespace norvik50 {

// One loaded resource library; destroying it unloads (closes) it.
class NORVIK50_EXPORT ResourceModule {
 public:
  virtual ~ResourceModule();
  // The string-table entry `id`, as stored (UTF-16, any length); nullopt
  // when the library has no such string.
  virtual std::optional<std::u16string> FetchString(uint16_t id) = 0;
  // The bytes of the custom resource named `name` of type `type`, both in
  // the forms a resource call takes: "#100" for a number, other text for a
  // name compared in upper case ("XML", "#10"). nullopt when absent.
  virtual std::optional<std::string> FetchResource(std::u16string_view type,
                                                   std::u16string_view name) = 0;
};

// Opens the library at a Windows-style path; nullptr when it cannot be
// loaded (missing, unreadable, not a resource library, damaged).
using ResourceModuleOpener =
    std::function<std::unique_ptr<ResourceModule>(std::u16string_view path)>;

// Opens `path` with the installed opener (the native reader by default).
// The path reaches the file system through the drive map (ToLinuxPath).
NORVIK50_EXPORT std::unique_ptr<ResourceModule> OpenResourceModule(std::u16string_view path);
// Installs `opener` for the process; an empty one restores the native
// reader.
NORVIK50_EXPORT void SetResourceModuleOpener(ResourceModuleOpener opener);
// The native reader on a Linux path, whatever opener is installed.
NORVIK50_EXPORT std::unique_ptr<ResourceModule> OpenPeResourceModule(const std::string& linux_path);

}  // namespace norvik50

#endif  // NORVIK50_RESOURCE_MODULE_H_
