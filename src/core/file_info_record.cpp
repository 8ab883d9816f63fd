#include "core/file_info_record.h"

namespace norvik50 {
namespace {

struct Field {
  const char* name;
  std::u16string typFileInfo::*member;
};

constexpr Field kFields[] = {
    {"lpDrive", &typFileInfo::lpDrive},       {"lpPath", &typFileInfo::lpPath},
    {"lpFilename", &typFileInfo::lpFilename}, {"lpExt", &typFileInfo::lpExt},
    {"lpFullName", &typFileInfo::lpFullName},
};

}  // namespace

Record ToRecord(const typFileInfo& info) {
  std::vector<std::pair<std::string, Variant>> fields;
  for (const Field& f : kFields) fields.emplace_back(f.name, Variant(info.*f.member));
  return Record(kFileInfoType, std::move(fields));
}

typFileInfo FileInfoFromRecord(const Record& record) {
  typFileInfo info;
  for (const Field& f : kFields) {
    if (const Variant* v = record.find(f.name); v != nullptr && v->is_string()) {
      info.*f.member = v->as_string();
    }
  }
  return info;
}

}  // namespace norvik50
