#include "resources/file_image_bytes.h"

#include "core/outside_file.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace norvik50 {

std::shared_ptr<FileImageBytes> FileImageBytes::Open(const std::string& path) {
  auto file = OutsideFile::Open(path);
  if (!file || file->size() == 0) return nullptr;
  const uint64_t size = file->size();
  return std::make_shared<FileImageBytes>(file->Release(), size);
}

FileImageBytes::~FileImageBytes() { ::close(fd_); }

bool FileImageBytes::ReadAt(uint8_t* to, uint64_t length, uint64_t offset) const {
  while (length > 0) {
    const ssize_t got = ::pread(fd_, to, length, static_cast<off_t>(offset));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;  // an error, or the file was cut short
    to += got;
    offset += static_cast<uint64_t>(got);
    length -= static_cast<uint64_t>(got);
  }
  return true;
}

std::optional<std::span<const uint8_t>> FileImageBytes::ReadAcrossBlocks(uint64_t offset,
                                                                         uint64_t length) {
  // A piece must live as long as this object, since the span handed out
  // points into it. A directory of 65,535 entries naming one long name
  // reads that name once per entry; kept piece by piece that would be
  // thousands of times the file. Once the pieces would cost more than the
  // file, reading it whole costs less than any further piece.
  if (piece_bytes_ + length + kPieceOverhead > size_) {
    if (whole_failed_) return std::nullopt;
    auto whole = std::make_unique_for_overwrite<uint8_t[]>(size_);
    if (!ReadAt(whole.get(), size_, 0)) {
      whole_failed_ = true;
      return std::nullopt;
    }
    whole_ = std::move(whole);
    return std::span<const uint8_t>(whole_.get() + offset, length);
  }
  auto piece = std::make_unique_for_overwrite<uint8_t[]>(length);
  if (!ReadAt(piece.get(), length, offset)) return std::nullopt;
  pieces_.push_back(std::move(piece));
  piece_bytes_ += length + kPieceOverhead;
  return std::span<const uint8_t>(pieces_.back().get(), length);
}

std::optional<std::span<const uint8_t>> FileImageBytes::Read(uint64_t offset, uint64_t length) {
  if (offset > size_ || size_ - offset < length) return std::nullopt;
  if (length == 0) return std::span<const uint8_t>();
  if (whole_) return std::span<const uint8_t>(whole_.get() + offset, length);
  const uint64_t block = offset / kBlock;
  if ((offset + length - 1) / kBlock != block) return ReadAcrossBlocks(offset, length);
  auto it = blocks_.find(block);
  if (it == blocks_.end()) {
    const uint64_t start = block * kBlock;
    const uint64_t bytes = std::min(kBlock, size_ - start);
    auto data = std::make_unique_for_overwrite<uint8_t[]>(bytes);
    if (!ReadAt(data.get(), bytes, start)) return std::nullopt;
    it = blocks_.emplace(block, std::move(data)).first;
  }
  return std::span<const uint8_t>(it->second.get() + offset % kBlock, length);
}

}  // namespace norvik50
