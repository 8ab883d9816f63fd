#include "resources/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norvik50 {

std::unique_ptr<MappedFile> MappedFile::Open(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return nullptr;
  struct stat info {};
  void* data = MAP_FAILED;
  if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0) {
    data = ::mmap(nullptr, static_cast<std::size_t>(info.st_size), PROT_READ, MAP_PRIVATE, fd, 0);
  }
  ::close(fd);  // the mapping stays valid without the descriptor
  if (data == MAP_FAILED) return nullptr;
  return std::unique_ptr<MappedFile>(
      new MappedFile(static_cast<const uint8_t*>(data), static_cast<std::size_t>(info.st_size)));
}

MappedFile::~MappedFile() { ::munmap(const_cast<uint8_t*>(data_), size_); }

}  // namespace norvik50
