// A bounded reader of the resources of a PE32 or PE32+ image (a Windows
// resource library), held in memory or read from its file piece by piece.
//
// Every read is checked against the bytes given: a truncated file, a size
// or offset that points outside, a directory that refers back to itself,
// all end in "no such resource" or a failed parse, never a read past the
// end. Lookups walk exactly the three directory levels (type, name,
// language) they need, so a cyclic directory cannot make them loop.
#ifndef NORVIK50_SRC_RESOURCES_PE_IMAGE_H_
#define NORVIK50_SRC_RESOURCES_PE_IMAGE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace norvik50::pe {

// A resource type or name: a number, or a name (compared in upper case).
struct ResourceId {
  std::optional<uint16_t> number;
  std::u16string name;
  bool operator==(const ResourceId&) const = default;
};

// The forms FindResourceA takes: "#100" is the number 100, any other text a
// name. nullopt for "#" followed by anything but a decimal number up to
// 65535, and for the empty text.
std::optional<ResourceId> ParseResourceId(std::u16string_view text);
// The written form: "#100" for a number, the name otherwise.
std::u16string ResourceIdText(const ResourceId& id);

inline constexpr uint16_t kStringTableType = 6;

// One resource of the image, as a listing shows it. Entries that refer to
// one name in the file share one copy of it, so a listing costs no more
// than the file however many entries name the same long string.
struct ResourceEntry {
  std::shared_ptr<const ResourceId> type;
  std::shared_ptr<const ResourceId> name;
  uint16_t language = 0;
  uint32_t size = 0;
};

struct ResourceListing {
  std::vector<ResourceEntry> entries;
  // false when the directories refer to more entries, names and data
  // entries than the resource section holds bytes: they overlap, as no
  // linker writes them, and the listing stopped there.
  bool complete = true;
};

// Where an image's bytes come from.
class ImageBytes {
 public:
  virtual ~ImageBytes() = default;
  virtual uint64_t size() const noexcept = 0;
  // The `length` bytes at `offset`, valid as long as this object; nullopt
  // when they do not all lie within the image or cannot be read.
  virtual std::optional<std::span<const uint8_t>> Read(uint64_t offset, uint64_t length) = 0;
};

// Bytes held in memory by the caller.
std::shared_ptr<ImageBytes> BytesInMemory(std::span<const uint8_t> bytes);

class PeImage {
 public:
  // The image in `bytes` (which must outlive it); nullopt when they are not
  // a PE32 or PE32+ image whose headers and section table lie within them,
  // or whose resource directory lies outside them.
  static std::optional<PeImage> Parse(std::span<const uint8_t> bytes);
  // The same for bytes from any source, read only where a lookup needs them.
  static std::optional<PeImage> Parse(std::shared_ptr<ImageBytes> bytes);

  // The data of resource (type, name) in the language that `preferred`
  // picks: the first of those languages that the resource has, else its
  // first language entry. nullopt when the resource is absent or its data
  // does not lie within the image.
  std::optional<std::span<const uint8_t>> Find(const ResourceId& type, const ResourceId& name,
                                               std::span<const uint16_t> preferred) const;

  // The string-table entry `id`: block id / 16 + 1, slot id mod 16;
  // nullopt when the block is absent or cut short. An entry of length 0 is
  // the empty text.
  std::optional<std::u16string> FindString(uint16_t id, std::span<const uint16_t> preferred) const;

  // Every resource, in directory order; a directory reached twice is
  // listed once. The work is bounded by the size of the resource section:
  // directories that overlap end the listing early (complete is false).
  ResourceListing List() const;

  bool is_pe32_plus() const noexcept { return pe32_plus_; }

 private:
  struct Section {
    uint32_t rva;
    uint32_t file_offset;
    uint32_t file_size;  // the part of the section the file holds
  };
  struct Entry {
    uint32_t name_field;
    uint32_t offset_field;
  };

  // The file offset of `size` bytes at `rva`, when they lie in a section.
  std::optional<uint64_t> AtRva(uint32_t rva, uint32_t size) const;
  // Reads within the resource section, `at` counted from its directory.
  std::optional<std::span<const uint8_t>> RootBytes(uint64_t at, uint64_t length) const;
  std::optional<uint16_t> RootU16(uint64_t at) const;
  std::optional<uint32_t> RootU32(uint64_t at) const;
  // The entries of one directory, read one by one as a lookup needs them.
  struct Entries {
    uint64_t first = 0;  // the table's offset; count * 8 bytes checked to lie in the section
    std::size_t count = 0;
    std::size_t named = 0;  // named entries come first
    std::size_t size() const noexcept { return count; }
    bool empty() const noexcept { return count == 0; }
  };
  std::optional<Entry> EntryAt(const Entries& entries, std::size_t i) const;
  std::optional<Entries> Directory(uint32_t offset) const;
  // The counted name at `at`, or nullopt when it does not lie within the
  // section.
  std::optional<std::u16string> NameAt(uint64_t at) const;
  // Whether the counted name at `at` is `upper` in upper case, compared
  // where it lies without copying it.
  bool NameIs(uint64_t at, std::u16string_view upper) const;
  std::optional<Entry> Lookup(const Entries& entries, const ResourceId& id) const;
  std::optional<uint32_t> Subdirectory(const Entry& entry) const;
  std::optional<std::span<const uint8_t>> Data(const Entry& entry) const;
  // The file offset of the data a data entry describes, and its size.
  std::optional<uint64_t> DataEntry(uint32_t offset, uint32_t* size) const;

  std::shared_ptr<ImageBytes> bytes_;
  std::vector<Section> sections_;
  // The resource section from its directory on, in the file.
  uint64_t root_offset_ = 0;
  uint64_t root_size_ = 0;
  bool pe32_plus_ = false;
};

}  // namespace norvik50::pe

#endif  // NORVIK50_SRC_RESOURCES_PE_IMAGE_H_
