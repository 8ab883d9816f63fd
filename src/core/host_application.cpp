#include <unistd.h>

#include <climits>
#include <cstdlib>

#include "norvik50/encoding.h"
#include "norvik50/host.h"

namespace norvik50 {
namespace {

struct HostFacts {
  std::u16string name;
  std::u16string title;
};

// The executable's name without folder and extension, as a host expects to
// see itself in the log.
std::u16string ExecutableName() {
  char buffer[PATH_MAX];
  const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
  if (n <= 0) return u"norvik50";
  std::string path(buffer, static_cast<std::size_t>(n));
  std::string base = path.substr(path.find_last_of('/') + 1);
  const std::size_t dot = base.find_last_of('.');
  if (dot != std::string::npos && dot > 0) base.erase(dot);
  return FromUtf8(base);
}

HostFacts& Facts() {
  static HostFacts facts{ExecutableName(), u""};
  return facts;
}

}  // namespace

std::u16string HostApplicationName() { return Facts().name; }

std::u16string HostApplicationTitle() {
  if (const char* env = std::getenv("NORVIK50_APP_TITLE"); env != nullptr && *env) {
    return FromUtf8(env);
  }
  return Facts().title.empty() ? Facts().name : Facts().title;
}

void SetHostApplication(std::u16string_view name, std::u16string_view title) {
  if (!name.empty()) Facts().name = name;
  Facts().title = title;
}

}  // namespace norvik50
