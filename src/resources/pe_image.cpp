#include "resources/pe_image.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>

namespace norvik50::pe {
namespace {

constexpr uint32_t kHighBit = 0x80000000u;
constexpr std::size_t kDirectoryHeader = 16;
constexpr std::size_t kEntrySize = 8;
constexpr std::size_t kDataEntrySize = 16;
constexpr std::size_t kSectionHeader = 40;
constexpr uint32_t kResourceDirectoryIndex = 2;

// Little-endian reads that answer nullopt instead of reading past the end.
std::optional<uint16_t> U16(std::span<const uint8_t> b, uint64_t at) {
  if (at > b.size() || b.size() - at < 2) return std::nullopt;
  return static_cast<uint16_t>(b[at] | (b[at + 1] << 8));
}
std::optional<uint32_t> U32(std::span<const uint8_t> b, uint64_t at) {
  if (at > b.size() || b.size() - at < 4) return std::nullopt;
  return static_cast<uint32_t>(b[at]) | (static_cast<uint32_t>(b[at + 1]) << 8) |
         (static_cast<uint32_t>(b[at + 2]) << 16) | (static_cast<uint32_t>(b[at + 3]) << 24);
}

// The same on a source: the bytes are read first, then decoded.
std::optional<uint16_t> U16(ImageBytes& source, uint64_t at) {
  const auto b = source.Read(at, 2);
  return b ? U16(*b, 0) : std::nullopt;
}
std::optional<uint32_t> U32(ImageBytes& source, uint64_t at) {
  const auto b = source.Read(at, 4);
  return b ? U32(*b, 0) : std::nullopt;
}

class MemoryBytes final : public ImageBytes {
 public:
  explicit MemoryBytes(std::span<const uint8_t> bytes) : bytes_(bytes) {}
  uint64_t size() const noexcept override { return bytes_.size(); }
  std::optional<std::span<const uint8_t>> Read(uint64_t offset, uint64_t length) override {
    if (offset > bytes_.size() || bytes_.size() - offset < length) return std::nullopt;
    return bytes_.subspan(offset, length);
  }

 private:
  std::span<const uint8_t> bytes_;
};

char16_t Upper(char16_t c) { return c >= u'a' && c <= u'z' ? char16_t(c - u'a' + u'A') : c; }

std::u16string UpperCase(std::u16string_view text) {
  std::u16string upper(text);
  for (char16_t& c : upper) c = Upper(c);
  return upper;
}

}  // namespace

std::optional<ResourceId> ParseResourceId(std::u16string_view text) {
  if (text.empty()) return std::nullopt;
  if (text.front() != u'#') return ResourceId{std::nullopt, UpperCase(text)};
  const std::u16string_view digits = text.substr(1);
  if (digits.empty() || digits.size() > 5) return std::nullopt;
  uint32_t number = 0;
  for (char16_t c : digits) {
    if (c < u'0' || c > u'9') return std::nullopt;
    number = number * 10 + (c - u'0');
  }
  if (number > 0xFFFF) return std::nullopt;
  return ResourceId{static_cast<uint16_t>(number), {}};
}

std::u16string ResourceIdText(const ResourceId& id) {
  if (!id.number) return id.name;
  const std::string digits = std::to_string(*id.number);
  return u"#" + std::u16string(digits.begin(), digits.end());
}

std::shared_ptr<ImageBytes> BytesInMemory(std::span<const uint8_t> bytes) {
  return std::make_shared<MemoryBytes>(bytes);
}

std::optional<PeImage> PeImage::Parse(std::span<const uint8_t> bytes) {
  return Parse(BytesInMemory(bytes));
}

std::optional<PeImage> PeImage::Parse(std::shared_ptr<ImageBytes> source) {
  ImageBytes& bytes = *source;
  const uint64_t file_size = bytes.size();
  const auto dos = bytes.Read(0, 64);
  if (!dos || (*dos)[0] != 'M' || (*dos)[1] != 'Z') return std::nullopt;
  const uint32_t pe = *U32(*dos, 0x3C);
  const auto signature = U32(bytes, pe);
  if (!signature || *signature != 0x00004550u) return std::nullopt;  // "PE\0\0"
  const auto section_count = U16(bytes, uint64_t{pe} + 6);
  const auto optional_size = U16(bytes, uint64_t{pe} + 20);
  const uint64_t optional_header = uint64_t{pe} + 24;
  const auto magic = U16(bytes, optional_header);
  if (!section_count || !optional_size || !magic) return std::nullopt;

  PeImage image;
  image.bytes_ = std::move(source);
  uint64_t count_at = 0;
  if (*magic == 0x10B) {
    count_at = optional_header + 92;
  } else if (*magic == 0x20B) {
    count_at = optional_header + 108;
    image.pe32_plus_ = true;
  } else {
    return std::nullopt;
  }
  const uint64_t optional_end = optional_header + *optional_size;
  const uint64_t sections_at = optional_end;
  const auto table = bytes.Read(sections_at, uint64_t{*section_count} * kSectionHeader);
  if (!table) return std::nullopt;
  for (uint32_t i = 0; i < *section_count; ++i) {
    const uint64_t at = uint64_t{i} * kSectionHeader;
    const uint32_t virtual_size = *U32(*table, at + 8);
    const uint32_t rva = *U32(*table, at + 12);
    const uint32_t raw_size = *U32(*table, at + 16);
    const uint32_t raw_offset = *U32(*table, at + 20);
    if (raw_offset >= file_size) continue;  // nothing of it in the file
    // The loader maps at most the raw data; a virtual size of 0 (old
    // linkers) means the raw size.
    uint64_t section_size = raw_size;
    if (virtual_size != 0) section_size = std::min<uint64_t>(section_size, virtual_size);
    section_size = std::min<uint64_t>(section_size, file_size - raw_offset);
    image.sections_.push_back({rva, raw_offset, static_cast<uint32_t>(section_size)});
  }

  const auto directory_count = U32(bytes, count_at);
  const uint64_t directory_at = count_at + 4 + uint64_t{kResourceDirectoryIndex} * 8;
  if (!directory_count || *directory_count <= kResourceDirectoryIndex ||
      directory_at + 8 > optional_end) {
    return image;  // an image without resources: every lookup finds nothing
  }
  const auto resource_rva = U32(bytes, directory_at);
  if (!resource_rva) return std::nullopt;
  if (*resource_rva == 0) return image;
  // The directory's offsets count from its start and may reach anywhere in
  // its section, so the root spans the rest of that section.
  for (const Section& s : image.sections_) {
    if (*resource_rva >= s.rva && *resource_rva - s.rva < s.file_size) {
      const uint32_t skip = *resource_rva - s.rva;
      image.root_offset_ = uint64_t{s.file_offset} + skip;
      image.root_size_ = s.file_size - skip;
      break;
    }
  }
  if (image.root_size_ < kDirectoryHeader) return std::nullopt;
  return image;
}

std::optional<uint64_t> PeImage::AtRva(uint32_t rva, uint32_t size) const {
  for (const Section& s : sections_) {
    if (rva >= s.rva && rva - s.rva < s.file_size) {
      const uint32_t skip = rva - s.rva;
      if (size > s.file_size - skip) return std::nullopt;
      return uint64_t{s.file_offset} + skip;
    }
  }
  return std::nullopt;
}

std::optional<std::span<const uint8_t>> PeImage::RootBytes(uint64_t at, uint64_t length) const {
  if (at > root_size_ || root_size_ - at < length) return std::nullopt;
  return bytes_->Read(root_offset_ + at, length);
}
std::optional<uint16_t> PeImage::RootU16(uint64_t at) const {
  const auto b = RootBytes(at, 2);
  return b ? U16(*b, 0) : std::nullopt;
}
std::optional<uint32_t> PeImage::RootU32(uint64_t at) const {
  const auto b = RootBytes(at, 4);
  return b ? U32(*b, 0) : std::nullopt;
}

std::optional<PeImage::Entry> PeImage::EntryAt(const Entries& entries, std::size_t i) const {
  const auto b = RootBytes(entries.first + i * kEntrySize, kEntrySize);
  if (!b) return std::nullopt;
  return Entry{*U32(*b, 0), *U32(*b, 4)};
}

std::optional<PeImage::Entries> PeImage::Directory(uint32_t offset) const {
  const auto header = RootBytes(offset, kDirectoryHeader);
  if (!header) return std::nullopt;
  const uint16_t named = *U16(*header, 12);
  const uint16_t numbered = *U16(*header, 14);
  const uint64_t count = uint64_t{named} + numbered;
  const uint64_t first = uint64_t{offset} + kDirectoryHeader;
  if (first + count * kEntrySize > root_size_) return std::nullopt;
  return Entries{first, static_cast<std::size_t>(count), named};
}

std::optional<std::u16string> PeImage::NameAt(uint64_t at) const {
  const auto length = RootU16(at);
  const auto chars = length ? RootBytes(at + 2, uint64_t{*length} * 2) : std::nullopt;
  if (!chars) return std::nullopt;
  std::u16string name(*length, u'\0');
  for (uint16_t i = 0; i < *length; ++i) name[i] = static_cast<char16_t>(*U16(*chars, i * 2));
  return name;
}

bool PeImage::NameIs(uint64_t at, std::u16string_view upper) const {
  const auto length = RootU16(at);
  if (!length || *length != upper.size()) return false;
  const auto chars = RootBytes(at + 2, uint64_t{*length} * 2);
  if (!chars) return false;
  for (uint16_t i = 0; i < *length; ++i) {
    if (Upper(static_cast<char16_t>(*U16(*chars, i * 2))) != upper[i]) return false;
  }
  return true;
}

std::optional<PeImage::Entry> PeImage::Lookup(const Entries& entries, const ResourceId& id) const {
  if (id.number) {
    // Numbered entries follow the named ones in ascending order; the loader
    // searches them by halves, so an unsorted file misses entries here as
    // it does there.
    std::size_t low = std::min(entries.named, entries.size());
    std::size_t high = entries.size();
    while (low < high) {
      const std::size_t middle = low + (high - low) / 2;
      const auto found = EntryAt(entries, middle);
      if (!found) return std::nullopt;
      const Entry e = *found;
      const uint32_t number = e.name_field & 0xFFFF;
      if (!(e.name_field & kHighBit) && number == *id.number) return e;
      if ((e.name_field & kHighBit) || number < *id.number) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return std::nullopt;
  }
  const std::u16string wanted = UpperCase(id.name);
  // Entries may all refer to one name of the wanted length that differs
  // only at its end: each name compared in full is compared once.
  std::unordered_set<uint32_t> differ;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto found = EntryAt(entries, i);
    if (!found) return std::nullopt;
    const Entry e = *found;
    if (!(e.name_field & kHighBit)) break;
    const uint32_t at = e.name_field & ~kHighBit;
    const auto length = RootU16(at);
    if (!length || *length != wanted.size() || differ.contains(at)) continue;
    if (NameIs(at, wanted)) return e;
    differ.insert(at);
  }
  return std::nullopt;
}

std::optional<uint32_t> PeImage::Subdirectory(const Entry& entry) const {
  if (!(entry.offset_field & kHighBit)) return std::nullopt;
  return entry.offset_field & ~kHighBit;
}

std::optional<uint64_t> PeImage::DataEntry(uint32_t offset, uint32_t* size) const {
  const auto b = RootBytes(offset, kDataEntrySize);
  if (!b) return std::nullopt;
  const uint32_t rva = *U32(*b, 0);
  const uint32_t length = *U32(*b, 4);
  *size = length;
  return AtRva(rva, length);
}

std::optional<std::span<const uint8_t>> PeImage::Data(const Entry& entry) const {
  if (entry.offset_field & kHighBit) return std::nullopt;
  uint32_t size = 0;
  const auto at = DataEntry(entry.offset_field, &size);
  if (!at) return std::nullopt;
  return bytes_->Read(*at, size);
}

std::optional<std::span<const uint8_t>> PeImage::Find(const ResourceId& type,
                                                      const ResourceId& name,
                                                      std::span<const uint16_t> preferred) const {
  if (root_size_ == 0) return std::nullopt;
  const auto types = Directory(0);
  if (!types) return std::nullopt;
  const auto type_entry = Lookup(*types, type);
  const auto names_at = type_entry ? Subdirectory(*type_entry) : std::nullopt;
  const auto names = names_at ? Directory(*names_at) : std::nullopt;
  const auto name_entry = names ? Lookup(*names, name) : std::nullopt;
  const auto languages_at = name_entry ? Subdirectory(*name_entry) : std::nullopt;
  const auto languages = languages_at ? Directory(*languages_at) : std::nullopt;
  if (!languages || languages->empty()) return std::nullopt;
  for (uint16_t language : preferred) {
    if (const auto entry = Lookup(*languages, ResourceId{language, {}})) return Data(*entry);
  }
  const auto first = EntryAt(*languages, 0);
  return first ? Data(*first) : std::nullopt;
}

std::optional<std::u16string> PeImage::FindString(uint16_t id,
                                                  std::span<const uint16_t> preferred) const {
  const auto block = Find(ResourceId{kStringTableType, {}},
                          ResourceId{static_cast<uint16_t>((id >> 4) + 1), {}}, preferred);
  if (!block) return std::nullopt;
  // Sixteen counted strings without terminators; skip to the wanted slot.
  uint64_t at = 0;
  for (unsigned slot = 0; slot < (id & 15u); ++slot) {
    const auto length = U16(*block, at);
    if (!length) return std::nullopt;
    at += 2 + uint64_t{*length} * 2;
  }
  const auto length = U16(*block, at);
  if (!length || at + 2 + uint64_t{*length} * 2 > block->size()) return std::nullopt;
  std::u16string text(*length, u'\0');
  for (uint16_t i = 0; i < *length; ++i)
    text[i] = static_cast<char16_t>(*U16(*block, at + 2 + i * 2));
  return text;
}

ResourceListing PeImage::List() const {
  ResourceListing listing;
  if (root_size_ == 0) return listing;
  // Without overlaps every directory, entry, name and data entry lies in
  // bytes of its own in the section, so a listing that needs more than the
  // section holds has met directories placed inside one another: a
  // thousand of them inside one table would each be walked in full.
  uint64_t budget = root_size_;
  auto spend = [&](uint64_t bytes) {
    if (bytes > budget) listing.complete = false;
    budget -= std::min(bytes, budget);
    return listing.complete;
  };
  // A directory offset reached a second time is skipped: real files never
  // share directories, and a cyclic or shared one must not multiply the
  // work.
  std::set<uint32_t> seen{0};
  auto enter = [&](const Entry& e) -> std::optional<Entries> {
    const auto at = Subdirectory(e);
    if (!at || !seen.insert(*at).second || !spend(kDirectoryHeader)) return std::nullopt;
    return Directory(*at);
  };
  // Each name is read once, however many entries refer to it.
  std::unordered_map<uint32_t, std::shared_ptr<const ResourceId>> names;
  auto id = [&](const Entry& e) -> std::shared_ptr<const ResourceId> {
    if (!(e.name_field & kHighBit)) {
      return std::make_shared<const ResourceId>(
          ResourceId{static_cast<uint16_t>(e.name_field & 0xFFFF), {}});
    }
    const uint32_t at = e.name_field & ~kHighBit;
    if (const auto known = names.find(at); known != names.end()) return known->second;
    const auto length = RootU16(at);
    if (!length || !spend(2 + uint64_t{*length} * 2)) return nullptr;
    auto name = NameAt(at);
    if (!name) return nullptr;
    auto shared = std::make_shared<const ResourceId>(ResourceId{std::nullopt, std::move(*name)});
    names.emplace(at, shared);
    return shared;
  };

  const auto types = spend(kDirectoryHeader) ? Directory(0) : std::nullopt;
  if (!types) return listing;
  for (std::size_t i = 0; i < types->size() && spend(kEntrySize); ++i) {
    const auto t = EntryAt(*types, i);
    const auto type = t ? id(*t) : nullptr;
    const auto names_in_type = type ? enter(*t) : std::nullopt;
    if (!names_in_type) continue;
    for (std::size_t j = 0; j < names_in_type->size() && spend(kEntrySize); ++j) {
      const auto n = EntryAt(*names_in_type, j);
      const auto name = n ? id(*n) : nullptr;
      const auto languages = name ? enter(*n) : std::nullopt;
      if (!languages) continue;
      for (std::size_t k = 0; k < languages->size() && spend(kEntrySize); ++k) {
        const auto l = EntryAt(*languages, k);
        uint32_t size = 0;
        if (!l || l->offset_field & kHighBit || !spend(kDataEntrySize) ||
            !DataEntry(l->offset_field, &size)) {
          continue;
        }
        listing.entries.push_back(
            {type, name, static_cast<uint16_t>(l->name_field & 0xFFFF), size});
      }
    }
  }
  return listing;
}

}  // namespace norvik50::pe
