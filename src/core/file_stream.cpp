#include "core/file_stream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>
#include <optional>
#include <string>

#include "core/outside_file.h"
#include "core/path_lookup.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace norvik50 {
namespace {

constexpr std::u16string_view kSource = u"Norvik50.tklFileStream";

[[noreturn]] void Fail(int32_t number, std::u16string_view detail, std::u16string_view path) {
  throw Error(number,
              RuntimeErrorText(number) + u" (" + std::u16string(detail) + u": '" +
                  std::u16string(path) + u"')",
              std::u16string(kSource));
}

std::string DiskPath(std::u16string_view path, PathStatus* status) {
  std::optional<std::string> disk = MapWindowsPath(path, status);
  if (!disk) Fail(52, u"no file can have this name", path);
  return std::move(*disk);
}

// The failure of an open or a write as the runtime numbers it.
int32_t ErrorNumberOf(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
      return 70;
    case ENOENT:
    case ENOTDIR:
      return 76;
    case ENOSPC:
    case EDQUOT:
      return 61;
    case EISDIR:
    case ENXIO:  // a pipe nobody reads, a device that is not there
      return 75;
    default:
      return 57;
  }
}

// Closes the descriptor with the object.
struct Descriptor {
  int fd;
  ~Descriptor() {
    if (fd >= 0) ::close(fd);
  }
};

}  // namespace

std::u16string ReadFileStream(std::u16string_view path) {
  PathStatus status;
  const std::string disk = DiskPath(path, &status);
  if (!status.exists) Fail(53, u"there is no such file", path);
  if (status.directory) Fail(75, u"a folder is not a file", path);
  std::optional<OutsideFile> file = OutsideFile::Open(disk);
  if (!file) {
    // The look-up found it; what is left is a file we may not open, or
    // something that is no regular file (a pipe, a device).
    if (::access(disk.c_str(), R_OK) != 0) Fail(70, u"it may not be read", path);
    Fail(75, u"only a regular file can be read", path);
  }
  // A text holds at most 2^31 - 1 characters, one per byte here.
  if (file->size() > static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) {
    Fail(7, u"the file is too large for a text", path);
  }
  const std::optional<std::string> bytes = file->ReadAll();
  if (!bytes) Fail(57, u"the file could not be read", path);
  return BytesToText(*bytes);
}

void WriteFileStream(std::u16string_view path, std::u16string_view text) {
  // Checked before the file is touched: a text that cannot be written must
  // not cost the file its old content.
  const std::optional<std::string> bytes = TextToBytes(text);
  if (!bytes) {
    throw Error(kErrInvalidCall,
                u"The text contains a character that is not a byte character (it has no "
                u"Windows-1252 code); the file was not changed: '" +
                    std::u16string(path) + u"'",
                std::u16string(kSource));
  }
  PathStatus status;
  const std::string disk = DiskPath(path, &status);
  if (status.directory) Fail(75, u"a folder is not a file", path);
  // O_NONBLOCK: opening a FIFO for writing would wait for a reader. Not
  // O_TRUNC: the old content stays until the new one is sure to fit.
  Descriptor file{::open(disk.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666)};
  if (file.fd < 0) Fail(ErrorNumberOf(errno), u"the file cannot be written", path);
  struct stat info {};
  if (::fstat(file.fd, &info) != 0 || !S_ISREG(info.st_mode)) {
    Fail(75, u"only a regular file can be written", path);
  }
  // Reserving the room first means a full disk fails here, before a byte
  // of the old content is overwritten. File systems that cannot reserve
  // say so, and the write goes ahead as it would anyway.
  if (!bytes->empty() && ::fallocate(file.fd, 0, 0, static_cast<off_t>(bytes->size())) != 0 &&
      errno != EOPNOTSUPP && errno != ENOSYS) {
    Fail(ErrorNumberOf(errno), u"there is no room for the new content", path);
  }
  if (!WriteAll(file.fd, *bytes) || ::ftruncate(file.fd, static_cast<off_t>(bytes->size())) != 0) {
    Fail(ErrorNumberOf(errno), u"the file could not be written", path);
  }
  const int fd = file.fd;
  file.fd = -1;
  if (::close(fd) != 0) Fail(ErrorNumberOf(errno), u"the file could not be written", path);
}

}  // namespace norvik50
