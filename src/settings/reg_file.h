// .reg files: the text form in which registry keys travel between
// machines. Two formats:
//  - "REGEDIT4": Windows-1252 text;
//  - "Windows Registry Editor Version 5.00": UTF-16LE with a byte-order
//    mark (a UTF-8 file with this header is read too).
// Lines end in CR LF when written; CR LF, LF or CR are read.
//
//   [HKEY_CURRENT_USER\Software\X]     a key (created on import)
//   [-HKEY_CURRENT_USER\Software\Old]  a key deleted with its sub-keys
//   "Name"="text"                      REG_SZ; \\ and \" escape
//   @="text"                           the key's default value
//   "Count"=dword:0000002a             REG_DWORD
//   "Blob"=hex:01,ff,10                REG_BINARY
//   "Path"=hex(2):25,00,00,00          REG_EXPAND_SZ (hex(7) REG_MULTI_SZ,
//                                      hex(N) any type N); a line ending in
//                                      "\" continues on the next
//   "Gone"=-                           a value deleted
//
// Text types given as hex hold UTF-16LE bytes in version 5 files and
// Windows-1252 bytes in REGEDIT4 files; in memory they are UTF-8 as the
// store keeps them.
#ifndef NORVIK50_SRC_SETTINGS_REG_FILE_H_
#define NORVIK50_SRC_SETTINGS_REG_FILE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvik50::settings {

enum class RegFormat { kRegedit4, kVersion5 };

struct RegFileValue {
  std::u16string name;  // "" is the default value (@)
  bool remove = false;  // "name"=-
  int32_t type = 0;
  std::string data;  // as the store keeps it
};

struct RegFileKey {
  int32_t root = 0;
  std::u16string path;  // below the root; "" is the root itself
  bool remove = false;  // [-KEY]
  std::vector<RegFileValue> values;
};

struct RegFile {
  RegFormat format = RegFormat::kVersion5;
  std::vector<RegFileKey> keys;
};

struct RegParseError {
  std::size_t line = 0;  // 1-based; 0 for the file as a whole
  std::string message;
};

// Reads a .reg file. nullopt with `error` set for anything that is not one
// (no header, a value outside a key, an unknown root, bad hex, an
// unterminated string...). Never writes anything.
std::optional<RegFile> ParseRegFile(std::string_view bytes, RegParseError& error);

// The file's bytes in `format`.
std::string WriteRegFile(const RegFile& file, RegFormat format);

// Text-type data between the bytes a hex(N) entry holds in `format` and the
// store's UTF-8; other types pass unchanged.
std::string HexEntryToStored(int32_t type, std::string_view bytes, RegFormat format);
std::string StoredToHexEntry(int32_t type, std::string_view data, RegFormat format);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_REG_FILE_H_
