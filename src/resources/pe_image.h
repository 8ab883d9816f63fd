// A bounded reader of the resources of a PE32 or PE32+ image (a Windows
// resource library) held in memory, usually a mapped file.
//
// Every read is checked against the bytes given: a truncated file, a size
// or offset that points outside, a directory that refers back to itself,
// all end in "no such resource" or a failed parse, never a read past the
// end. Lookups walk exactly the three directory levels (type, name,
// language) they need, so a cyclic directory cannot make them loop.
#ifndef NORVIK50_SRC_RESOURCES_PE_IMAGE_H_
#define NORVIK50_SRC_RESOURCES_PE_IMAGE_H_

#include <cstdint>
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

// One resource of the image, as a listing shows it.
struct ResourceEntry {
  ResourceId type;
  ResourceId name;
  uint16_t language = 0;
  uint32_t size = 0;
};

class PeImage {
 public:
  // The image in `bytes` (which must outlive it); nullopt when they are not
  // a PE32 or PE32+ image whose headers and section table lie within them,
  // or whose resource directory lies outside them.
  static std::optional<PeImage> Parse(std::span<const uint8_t> bytes);

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
  // listed once.
  std::vector<ResourceEntry> List() const;

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

  std::optional<std::span<const uint8_t>> AtRva(uint32_t rva, uint32_t size) const;
  // The entries of one directory, read in place (a lookup copies nothing).
  struct Entries {
    std::span<const uint8_t> table;  // count * 8 bytes, checked to lie in the image
    std::size_t named = 0;           // named entries come first
    std::size_t size() const noexcept { return table.size() / 8; }
    bool empty() const noexcept { return table.empty(); }
    Entry operator[](std::size_t i) const;
  };
  std::optional<Entries> Directory(uint32_t offset) const;
  std::optional<ResourceId> EntryId(const Entry& entry) const;
  std::optional<Entry> Lookup(const Entries& entries, const ResourceId& id) const;
  std::optional<uint32_t> Subdirectory(const Entry& entry) const;
  std::optional<std::span<const uint8_t>> Data(const Entry& entry) const;
  std::optional<std::span<const uint8_t>> DataEntry(uint32_t offset, uint32_t* size) const;

  std::span<const uint8_t> bytes_;
  std::vector<Section> sections_;
  std::span<const uint8_t> root_;  // the resource section from its directory on
  bool pe32_plus_ = false;
};

}  // namespace norvik50::pe

#endif  // NORVIK50_SRC_RESOURCES_PE_IMAGE_H_
