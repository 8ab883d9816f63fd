// A whole file as a text of byte characters (one character per byte,
// Windows-1252, as the LZW codec and the registry's binary values read
// bytes), read and written through the drive map.
#ifndef NORVIK50_SRC_CORE_FILE_STREAM_H_
#define NORVIK50_SRC_CORE_FILE_STREAM_H_

#include <string>
#include <string_view>

namespace norvik50 {

// The bytes of the file `path` (a Windows path, found without regard to
// case) as byte characters. Raises norvik50::Error 52 for a name that
// cannot name a file (empty, a NUL inside, an unmapped drive, a share),
// 53 when no file is there, 75 for a folder or anything but a regular
// file, 70 when it may not be read, 7 for a file too large for a text.
std::u16string ReadFileStream(std::u16string_view path);

// Makes the file `path` hold exactly the bytes `text` stands for, creating
// it when missing (read and write for everybody, less the umask) and
// keeping its mode, owner and links when it exists. Raises norvik50::Error
// 5, with the file untouched, when a character has no Windows-1252 byte;
// 52 as ReadFileStream; 76 when the folder is missing; 75 for a folder or
// anything but a regular file; 70 when it may not be written; 61 when the
// disk has no room for the new content, with the old content kept.
void WriteFileStream(std::u16string_view path, std::u16string_view text);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_FILE_STREAM_H_
