// The log file's line format: a "dd.mm.yyyy hh:nn" stamp, spaces to the
// next 14-column print zone (column 29), the message, CR LF, written as
// Windows-1252 bytes.
#ifndef NORVIK50_SRC_CORE_LOG_FILE_H_
#define NORVIK50_SRC_CORE_LOG_FILE_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "norvik50/values.h"

namespace norvik50 {

// One complete log line as the bytes that go into the file.
std::string FormatLogLine(std::u16string_view message, const CivilDateTime& when);

// "ERR=13 'Type mismatch' (Source=LIB:tkrSetValue())".
std::u16string FormatErrorLine(int32_t number, std::u16string_view description,
                               std::u16string_view source);

// The number as tklErrorMsg shows it: decimal, or "&H" and upper-case hex
// of the 32-bit pattern for a negative number ("&H80004005").
std::u16string ErrorNumberText(int32_t number);

// Writes `bytes` to the Linux file `path`, truncating it first when
// `truncate` is set and appending otherwise; creates a missing file. False
// (and nothing written) when `path` is a symbolic link, not a regular file,
// or a file of another user; false on any other failure.
bool WriteLogBytes(const std::string& path, std::string_view bytes, bool truncate);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_LOG_FILE_H_
