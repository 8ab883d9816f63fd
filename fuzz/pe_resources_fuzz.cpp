// libFuzzer target for the PE resource reader. Each input is taken as a
// whole resource library, read twice: from memory, and from a file through
// the block reader the resource members use. Parsing, every lookup a
// resource member makes (strings in several slots and languages, custom
// resources by name and by number) and the full listing must end without
// reading outside the input, and both readers must give the same answers.
// Whatever a lookup from memory returns must lie within the input.
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include "resources/file_image_bytes.h"
#include "resources/pe_image.h"

namespace {

namespace pe = norvik50::pe;

void Check(bool ok) {
  if (!ok) std::abort();
}

constexpr std::array<uint16_t, 3> kLanguages{0x0000, 0x0407, 0x0409};

// The input as an open file of its own, in memory: the fuzzer runs
// thousands of inputs a second, which a disk would slow down.
std::shared_ptr<norvik50::FileImageBytes> AsFile(std::span<const uint8_t> bytes) {
  const int fd = ::memfd_create("pe_resources_fuzz", MFD_CLOEXEC);
  Check(fd >= 0);
  for (std::size_t written = 0; written < bytes.size();) {
    const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
    Check(n > 0);
    written += static_cast<std::size_t>(n);
  }
  return std::make_shared<norvik50::FileImageBytes>(fd, bytes.size());
}

bool Same(const std::optional<std::span<const uint8_t>>& a,
          const std::optional<std::span<const uint8_t>>& b) {
  if (!a || !b) return !a && !b;
  return std::equal(a->begin(), a->end(), b->begin(), b->end());
}

void CheckWithin(const std::optional<std::span<const uint8_t>>& found,
                 std::span<const uint8_t> input) {
  if (found) {
    Check(found->data() >= input.data() &&
          found->data() + found->size() <= input.data() + input.size());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const std::span<const uint8_t> bytes(data, size);
  const auto image = pe::PeImage::Parse(bytes);
  // The file reader takes only files with content, as Open does.
  const auto from_file = size > 0 ? pe::PeImage::Parse(AsFile(bytes)) : std::nullopt;
  Check(image.has_value() == from_file.has_value());
  if (!image) return 0;
  for (uint16_t id : {0, 1, 15, 16, 100, 200, 65535}) {
    Check(image->FindString(id, kLanguages) == from_file->FindString(id, kLanguages));
    Check(image->FindString(id, {}) == from_file->FindString(id, {}));
  }
  const pe::ResourceId types[] = {
      {6, {}}, {10, {}}, {std::nullopt, u"XML"}, {std::nullopt, u"FORMS"}};
  const pe::ResourceId names[] = {{1, {}}, {7, {}}, {100, {}}, {std::nullopt, u"MAIN"}};
  for (const auto& type : types) {
    for (const auto& name : names) {
      const auto found = image->Find(type, name, kLanguages);
      CheckWithin(found, bytes);
      Check(Same(found, from_file->Find(type, name, kLanguages)));
    }
  }
  // Every listed resource can be looked up again. Its size may differ: a
  // damaged directory can hold two entries of one id, and the lookup, like
  // the loader's, finds whichever its search meets.
  const pe::ResourceListing listing = image->List();
  const pe::ResourceListing listed_from_file = from_file->List();
  Check(listing.complete == listed_from_file.complete);
  Check(listing.entries.size() == listed_from_file.entries.size());
  for (std::size_t i = 0; i < listing.entries.size(); ++i) {
    const pe::ResourceEntry& entry = listing.entries[i];
    const pe::ResourceEntry& other = listed_from_file.entries[i];
    Check(*entry.type == *other.type && *entry.name == *other.name &&
          entry.language == other.language && entry.size == other.size);
    const std::span<const uint16_t> language(&entry.language, 1);
    const auto found = image->Find(*entry.type, *entry.name, language);
    CheckWithin(found, bytes);
    Check(Same(found, from_file->Find(*entry.type, *entry.name, language)));
  }
  return 0;
}
