#include "core/outside_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace norvik50 {

std::optional<OutsideFile> OutsideFile::Open(const std::string& path) {
  // O_NONBLOCK: opening a FIFO for reading would wait for a writer. It has
  // no meaning for the regular files that pass the check below.
  const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return std::nullopt;
  struct stat info {};
  // Checked on the descriptor, not the name: the file cannot be swapped for
  // another between the check and the reads.
  if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
    ::close(fd);
    return std::nullopt;
  }
  return OutsideFile(fd, static_cast<uint64_t>(info.st_size));
}

OutsideFile::OutsideFile(OutsideFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)), size_(other.size_) {}

OutsideFile& OutsideFile::operator=(OutsideFile&& other) noexcept {
  if (this != &other) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = std::exchange(other.fd_, -1);
    size_ = other.size_;
  }
  return *this;
}

OutsideFile::~OutsideFile() {
  if (fd_ >= 0) ::close(fd_);
}

int OutsideFile::Release() noexcept { return std::exchange(fd_, -1); }

std::optional<std::string> OutsideFile::ReadAll() const {
  std::string bytes(size_, '\0');
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got = ::pread(fd_, bytes.data() + done, bytes.size() - done,
                                static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;  // cut short since it was opened
    done += static_cast<std::size_t>(got);
  }
  bytes.resize(done);
  return bytes;
}

std::optional<std::string> ReadOutsideFile(const std::string& path) {
  const auto file = OutsideFile::Open(path);
  if (!file) return std::nullopt;
  return file->ReadAll();
}

}  // namespace norvik50
