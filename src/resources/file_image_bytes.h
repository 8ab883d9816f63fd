// The bytes of a resource library read from its file as a lookup needs
// them, a block at a time.
//
// A lookup touches a few small pieces of a file of any size: the headers,
// a handful of directory entries and one resource. Reading just those costs
// a few reads; mapping the file instead cost more in unmapping it (with the
// TLB flush that takes) than the whole lookup. A file cut short while it is
// open makes the read fail, where a mapping would fault.
//
// What it holds stays below about three times the file's size, however
// often a damaged directory makes a lookup read the same bytes: each block
// once, the reads that cross blocks up to the file's size, and past that
// the whole file once, from which every later read is served.
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
  // What keeping one piece costs beyond its bytes: the allocator's header
  // and the pointer to it.
  static constexpr uint64_t kPieceOverhead = 32;
  bool ReadAt(uint8_t* to, uint64_t length, uint64_t offset) const;
  std::optional<std::span<const uint8_t>> ReadAcrossBlocks(uint64_t offset, uint64_t length);

  int fd_;
  uint64_t size_;
  // Every block read so far, by number, and the reads that cross a block
  // boundary: what Read returned stays valid while the object lives.
  std::map<uint64_t, std::unique_ptr<uint8_t[]>> blocks_;
  std::vector<std::unique_ptr<uint8_t[]>> pieces_;
  uint64_t piece_bytes_ = 0;  // what pieces_ costs, kPieceOverhead included
  // The whole file, once the pieces would have cost more than it.
  std::unique_ptr<uint8_t[]> whole_;
  // The whole file could not be read (it was cut short): later reads
  // across blocks fail at once instead of trying again.
  bool whole_failed_ = false;
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_FILE_IMAGE_BYTES_H_
