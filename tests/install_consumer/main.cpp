// A host built against the installed package only: the public headers and
// the shared library, found through find_package or pkg-config.
#include <norvik50/dispatch.h>
#include <norvik50/encoding.h>
#include <norvik50/lib.h>

#include <iostream>

int main() {
  norvik50::LIB lib;
  const auto joined = lib.tklGetFullPath(u"C:\\Temp", u"x.LOG");
  const auto called = norvik50::Invoke(lib, "tklGetFullPath",
                                       {norvik50::Variant(u"C:\\Temp\\"), norvik50::Variant(u"\\x.LOG")});
  if (joined != u"C:\\Temp\\x.LOG" || called.result->as_string() != joined) return 1;
  std::cout << norvik50::ToUtf8(joined) << '\n';
  return 0;
}
