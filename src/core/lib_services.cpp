// LIB: lifecycle, the cached folders and the registry base key.
#include <cstdlib>

#include "core/library_state.h"
#include "core/pointer_clip.h"
#include "core/property_bag.h"  // LIB owns one; its destructor needs the type
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"

#ifndef NORVIK50_DATADIR
#define NORVIK50_DATADIR "/usr/local/share/norvik50"
#endif

namespace norvik50 {
namespace {

// A folder named by the environment may be a Linux or a Windows path.
std::u16string FolderAsWindowsPath(const char* folder) {
  if (folder == nullptr || *folder == '\0') return u"";
  if (folder[0] != '/') return FromUtf8(folder);
  return ToWindowsPath(folder).value_or(u"");
}

}  // namespace

LIB::LIB() {
  // A named log call truncates: every new object starts nvk50err.LOG afresh.
  tklLogAction(HostApplicationName() + u" initialized.", u"nvk50err");
}

LIB::~LIB() {
  // The pointer this object confined goes free with it.
  ReleasePointerClipOf(*this);
  // An unnamed call appends to whatever log this object last named.
  tklLogAction(HostApplicationName() + u" terminated.", u"");
}

std::u16string LIB::tklSystemDir() {
  if (!system_dir_.empty()) return system_dir_;
  const char* configured = std::getenv("NORVIK50_WINDIR");
  system_dir_ = FolderAsWindowsPath(configured != nullptr ? configured : NORVIK50_DATADIR);
  // The Windows folder comes without a trailing separator.
  while (system_dir_.size() > 3 && system_dir_.back() == u'\\') system_dir_.pop_back();
  return system_dir_;
}

std::u16string LIB::tklTempDir() {
  if (!temp_dir_.empty()) return temp_dir_;
  const char* tmpdir = std::getenv("TMPDIR");
  temp_dir_ = FolderAsWindowsPath(tmpdir != nullptr && *tmpdir ? tmpdir : "/tmp");
  // Exactly one trailing "\"; when the folder cannot be named the cache
  // becomes "\" and stays so.
  if (temp_dir_.empty() || temp_dir_.back() != u'\\') temp_dir_.push_back(u'\\');
  return temp_dir_;
}

std::u16string LIB::tklRegKey() const { return BaseKey(); }

void LIB::tklRegKey(const std::u16string& value) { SetBaseKey(value); }

}  // namespace norvik50
