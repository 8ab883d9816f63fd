// The bytes of a resource library read from its file as a lookup needs
// them, a block at a time.
//
// A lookup touches a few small pieces of a file of any size: the headers,
// a handful of directory entries and one resource. Reading just those costs
// a few reads; mapping the file instead cost more in unmapping it (with the
// TLB flush that takes) than the whole lookup. A file cut short while it is
// open makes the read fail, where a mapping would fault.
#ifndef NORVIK50_SRC_RESOURCES_FILE_IMAGE_BYTES_H_
#define NORVIK50_SRC_RESOURCES_FILE_IMAGE_BYTES_H_

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "resources/pe_image.h"

namespace norvik50 {

class FileImageBytes final : public pe::ImageBytes {
 public:
  // The regular file at `path`; nullptr when it cannot be opened, is empty
  // or is not a regular file.
  static std::shared_ptr<FileImageBytes> Open(const std::string& path);
  FileImageBytes(int fd, uint64_t size) : fd_(fd), size_(size) {}
  ~FileImageBytes() override;
  FileImageBytes(const FileImageBytes&) = delete;
  FileImageBytes& operator=(const FileImageBytes&) = delete;

  uint64_t size() const noexcept override { return size_; }
  std::optional<std::span<const uint8_t>> Read(uint64_t offset, uint64_t length) override;

 private:
  static constexpr uint64_t kBlock = 4096;
  bool ReadAt(uint8_t* to, uint64_t length, uint64_t offset) const;

  int fd_;
  uint64_t size_;
  // Every block read so far, by number, and the reads that cross a block
  // boundary: what Read returned stays valid while the object lives, and
  // no part of the file is held twice but those pieces.
  std::map<uint64_t, std::unique_ptr<uint8_t[]>> blocks_;
  std::vector<std::unique_ptr<uint8_t[]>> pieces_;
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_FILE_IMAGE_BYTES_H_
