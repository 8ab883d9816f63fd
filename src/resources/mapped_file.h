// A read-only memory mapping of a whole file, released with the object.
#ifndef NORVIK50_SRC_RESOURCES_MAPPED_FILE_H_
#define NORVIK50_SRC_RESOURCES_MAPPED_FILE_H_

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace norvik50 {

class MappedFile {
 public:
  // The mapping of the regular file at `path`; nullptr when it cannot be
  // opened or mapped, or is empty or not a regular file.
  static std::unique_ptr<MappedFile> Open(const std::string& path);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  std::span<const uint8_t> bytes() const noexcept { return {data_, size_}; }

 private:
  MappedFile(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  const uint8_t* data_;
  std::size_t size_;
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_MAPPED_FILE_H_
