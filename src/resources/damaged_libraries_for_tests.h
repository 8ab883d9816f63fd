// Test support: resource libraries damaged on purpose to cost a reader
// memory or time, built in memory (a few hundred kilobytes each, so they
// are made where they are used rather than kept in the repository).
//
// Each is a PE32 image with one section, ".rsrc" at RVA 0x1000 and file
// offset 0x200, holding the resource directory the test lays out.
#ifndef NORVIK50_SRC_RESOURCES_DAMAGED_LIBRARIES_FOR_TESTS_H_
#define NORVIK50_SRC_RESOURCES_DAMAGED_LIBRARIES_FOR_TESTS_H_

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace norvik50::testing {

inline constexpr uint32_t kSubdirectoryBit = 0x80000000u;
inline constexpr uint32_t kSectionRva = 0x1000;
inline constexpr uint32_t kSectionFileOffset = 0x200;

// The bytes of a resource section, written field by field.
class SectionWriter {
 public:
  explicit SectionWriter(std::size_t size) : bytes_(size) {}
  void U16(std::size_t at, uint32_t value) {
    bytes_.at(at) = static_cast<uint8_t>(value);
    bytes_.at(at + 1) = static_cast<uint8_t>(value >> 8);
  }
  void U32(std::size_t at, uint32_t value) {
    U16(at, value & 0xFFFF);
    U16(at + 2, value >> 16);
  }
  void DirectoryHeader(std::size_t at, uint32_t named, uint32_t numbered) {
    U16(at + 12, named);
    U16(at + 14, numbered);
  }
  void Entry(std::size_t at, uint32_t name_field, uint32_t offset_field) {
    U32(at, name_field);
    U32(at + 4, offset_field);
  }
  // A data entry for `size` bytes at section offset `data`.
  void DataEntry(std::size_t at, std::size_t data, std::size_t size) {
    U32(at, kSectionRva + static_cast<uint32_t>(data));
    U32(at + 4, static_cast<uint32_t>(size));
  }
  void Bytes(std::size_t at, std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) bytes_.at(at + i) = static_cast<uint8_t>(text[i]);
  }
  const std::vector<uint8_t>& bytes() const { return bytes_; }

 private:
  std::vector<uint8_t> bytes_;
};

// A PE32 image whose only section is `section`, the resource directory.
inline std::vector<uint8_t> ImageAround(const std::vector<uint8_t>& section) {
  std::vector<uint8_t> image(kSectionFileOffset + section.size());
  auto u16 = [&](std::size_t at, uint32_t v) {
    image[at] = static_cast<uint8_t>(v);
    image[at + 1] = static_cast<uint8_t>(v >> 8);
  };
  auto u32 = [&](std::size_t at, uint32_t v) {
    u16(at, v & 0xFFFF);
    u16(at + 2, v >> 16);
  };
  const auto size = static_cast<uint32_t>(section.size());
  image[0] = 'M';
  image[1] = 'Z';
  constexpr std::size_t pe = 0x40;
  u32(0x3C, pe);
  u32(pe, 0x00004550);  // "PE\0\0"
  u16(pe + 4, 0x014C);  // i386
  u16(pe + 6, 1);       // one section
  u16(pe + 20, 224);    // the optional header with 16 data directories
  u16(pe + 22, 0x2102);
  constexpr std::size_t optional = pe + 24;
  u16(optional, 0x10B);  // PE32
  u32(optional + 92, 16);
  u32(optional + 96 + 2 * 8, kSectionRva);  // the resource directory
  u32(optional + 96 + 2 * 8 + 4, size);
  constexpr std::size_t header = optional + 224;
  const char name[8] = ".rsrc";
  std::copy(name, name + 8, image.begin() + header);
  u32(header + 8, size);
  u32(header + 12, kSectionRva);
  u32(header + 16, size);
  u32(header + 20, kSectionFileOffset);
  std::copy(section.begin(), section.end(), image.begin() + kSectionFileOffset);
  return image;
}

// 65,535 named types that all refer to one name of 65,535 characters
// (the letter N) and to one directory of names under it: 656 KB. That
// directory holds the same long name and the number 100, both leading to
// the resource kLongNameData in English (0x0409).
inline constexpr std::string_view kLongNameData = "<resources/>";
inline std::u16string LongName() { return std::u16string(65535, u'N'); }
inline std::vector<uint8_t> SharedLongNameLibrary() {
  constexpr std::size_t kTypes = 65535;
  constexpr std::size_t names = 16 + kTypes * 8;
  constexpr std::size_t languages = names + 16 + 2 * 8;
  constexpr std::size_t data_entry = languages + 16 + 8;
  constexpr std::size_t data = data_entry + 16;
  constexpr std::size_t long_name = data + 12;  // kLongNameData's size, kept even
  SectionWriter s(long_name + 2 + 65535 * 2);
  s.DirectoryHeader(0, kTypes, 0);
  for (std::size_t i = 0; i < kTypes; ++i)
    s.Entry(16 + i * 8, kSubdirectoryBit | long_name, kSubdirectoryBit | names);
  s.DirectoryHeader(names, 1, 1);
  s.Entry(names + 16, kSubdirectoryBit | long_name, kSubdirectoryBit | languages);
  s.Entry(names + 24, 100, kSubdirectoryBit | languages);
  s.DirectoryHeader(languages, 0, 1);
  s.Entry(languages + 16, 0x0409, data_entry);
  s.DataEntry(data_entry, data, kLongNameData.size());
  s.Bytes(data, kLongNameData);
  s.U16(long_name, 65535);
  for (std::size_t i = 0; i < 65535; ++i) s.U16(long_name + 2 + i * 2, 'N');
  return ImageAround(s.bytes());
}

// `count` type directories placed 8 bytes apart inside one table of
// entries: the count in each one's header is read from the table's own
// entries, so each spans tens of thousands of them (about 58,000 for a
// count of 36,000, a file of 1.05 MB). Every entry leads to one language
// directory holding 4 bytes, "data", as type #1 name #1 in 0x0409.
inline std::vector<uint8_t> OverlappingDirectoriesLibrary(uint32_t count) {
  const std::size_t languages = 16 + std::size_t{count} * 8;
  const std::size_t data_entry = languages + 16 + 8;
  const std::size_t data = data_entry + 16;
  const std::size_t table = data + 4;
  // Bytes 12-15 of a directory at table + 8i are the offset field of entry
  // i + 1: its low half counts the named entries, its high half (with the
  // subdirectory bit) the numbered ones.
  const uint32_t offset_field = kSubdirectoryBit | static_cast<uint32_t>(languages);
  const std::size_t spanned = (offset_field & 0xFFFF) + (offset_field >> 16);
  const std::size_t entries = count + 2 + spanned;
  SectionWriter s(table + entries * 8);
  s.DirectoryHeader(0, 0, count);
  for (uint32_t i = 0; i < count; ++i)
    s.Entry(16 + i * 8, i + 1, kSubdirectoryBit | static_cast<uint32_t>(table + i * 8));
  s.DirectoryHeader(languages, 0, 1);
  s.Entry(languages + 16, 0x0409, static_cast<uint32_t>(data_entry));
  s.DataEntry(data_entry, data, 4);
  s.Bytes(data, "data");
  for (std::size_t i = 0; i < entries; ++i) s.Entry(table + i * 8, 1, offset_field);
  return ImageAround(s.bytes());
}

inline void WriteLibrary(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

}  // namespace norvik50::testing

#endif  // NORVIK50_SRC_RESOURCES_DAMAGED_LIBRARIES_FOR_TESTS_H_
