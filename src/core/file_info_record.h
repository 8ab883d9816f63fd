// typFileInfo as a Record, the form it takes in a Variant (dispatch, batch).
#ifndef NORVIK50_SRC_CORE_FILE_INFO_RECORD_H_
#define NORVIK50_SRC_CORE_FILE_INFO_RECORD_H_

#include "norvik50/file_info.h"
#include "norvik50/variant.h"

namespace norvik50 {

inline constexpr const char* kFileInfoType = "typFileInfo";

Record ToRecord(const typFileInfo& info);
// Fields the record lacks, or that are not text, read as "".
typFileInfo FileInfoFromRecord(const Record& record);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_FILE_INFO_RECORD_H_
