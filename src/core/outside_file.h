// Opening files the library did not make: resource libraries, XML
// documents, debug documents, dialog scripts. Such a path may name anything
// a user or a stored setting points at — a named pipe that nobody writes,
// /dev/zero, a folder — and the library must neither block on it nor read
// it until memory runs out. So every outside file is opened without
// waiting, taken only when the opened descriptor is a regular file, and
// read only as far as its size at that moment.
#ifndef NORVIK50_SRC_CORE_OUTSIDE_FILE_H_
#define NORVIK50_SRC_CORE_OUTSIDE_FILE_H_

#include <cstdint>
#include <optional>
#include <string>

namespace norvik50 {

// An open regular file: its descriptor (closed with the object) and its
// size when it was opened.
class OutsideFile {
 public:
  // The regular file at the Linux `path`, opened for reading; nullopt when
  // it is missing, unreadable, or anything but a regular file (a FIFO
  // without a writer returns at once).
  static std::optional<OutsideFile> Open(const std::string& path);

  OutsideFile(OutsideFile&& other) noexcept;
  OutsideFile& operator=(OutsideFile&& other) noexcept;
  OutsideFile(const OutsideFile&) = delete;
  OutsideFile& operator=(const OutsideFile&) = delete;
  ~OutsideFile();

  int fd() const noexcept { return fd_; }
  uint64_t size() const noexcept { return size_; }
  // Gives the descriptor to the caller, who closes it.
  int Release() noexcept;

  // The whole file as it was when opened (at most size() bytes, fewer when
  // it was cut short since); nullopt on a read error.
  std::optional<std::string> ReadAll() const;

 private:
  OutsideFile(int fd, uint64_t size) : fd_(fd), size_(size) {}
  int fd_;
  uint64_t size_;
};

// OutsideFile::Open(path) and ReadAll() in one step.
std::optional<std::string> ReadOutsideFile(const std::string& path);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_OUTSIDE_FILE_H_
