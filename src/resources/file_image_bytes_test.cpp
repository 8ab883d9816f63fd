// The resource reader on a library read from its file, against the same
// library in memory, and on a file that changes while it is open.
#include "resources/file_image_bytes.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <array>
#include <fstream>

#include "norvik50/encoding.h"
#include "resources/damaged_libraries_for_tests.h"
#include "resources/resource_fixtures_for_tests.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

constexpr std::array<uint16_t, 1> kGerman{0x0407};

void WriteFile(const std::string& path, const std::vector<uint8_t>& bytes, std::size_t size) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(size));
}

TEST(FileImageBytesTest, ReadsWhatMemoryHolds) {
  // 106,641 bytes: many blocks and a partial last one.
  const auto bytes = testing::FixtureBytes("Bench_100K.dll");
  auto file = FileImageBytes::Open(testing::FixturePath("Bench_100K.dll"));
  ASSERT_TRUE(file);
  ASSERT_EQ(file->size(), bytes.size());
  // Within a block, across block boundaries, up to the last byte, repeated.
  const uint64_t n = bytes.size();
  const std::pair<uint64_t, uint64_t> reads[] = {
      {0, 64}, {4090, 12}, {4096, 4096}, {1, n - 1}, {n - 1, 1}, {n - 5000, 5000}, {0, 64}, {n, 0}};
  for (const auto& [offset, length] : reads) {
    const auto got = file->Read(offset, length);
    ASSERT_TRUE(got) << offset << "+" << length;
    EXPECT_TRUE(std::equal(got->begin(), got->end(), bytes.begin() + static_cast<long>(offset),
                           bytes.begin() + static_cast<long>(offset + length)))
        << offset << "+" << length;
  }
  // Nothing past the end, however the range is given.
  for (const auto& [offset, length] :
       {std::pair<uint64_t, uint64_t>{n, 1}, {n - 1, 2}, {n + 1, 0}, {0, n + 1}, {1, UINT64_MAX}}) {
    EXPECT_FALSE(file->Read(offset, length)) << offset << "+" << length;
  }
}

// A listing as text, to compare two of them.
std::string Listed(const pe::PeImage& image) {
  const pe::ResourceListing listing = image.List();
  std::string text = listing.complete ? "" : "(cut short)\n";
  for (const pe::ResourceEntry& e : listing.entries) {
    text += ToUtf8(pe::ResourceIdText(*e.type)) + "/" + ToUtf8(pe::ResourceIdText(*e.name)) + "/" +
            std::to_string(e.language) + "/" + std::to_string(e.size) + "\n";
  }
  return text;
}

TEST(FileImageBytesTest, LookupsFromTheFileMatchMemory) {
  for (const char* name :
       {"multi32.dll", "multi64.dll", "Res_DE.dll", "Res_EN.dll", "Bench_100K.dll"}) {
    const auto bytes = testing::FixtureBytes(name);
    const auto in_memory = pe::PeImage::Parse(bytes);
    const auto from_file = pe::PeImage::Parse(FileImageBytes::Open(testing::FixturePath(name)));
    ASSERT_TRUE(in_memory && from_file) << name;
    EXPECT_EQ(Listed(*from_file), Listed(*in_memory)) << name;
    EXPECT_FALSE(Listed(*from_file).empty()) << name;
    for (uint16_t id :
         {uint16_t{17}, uint16_t{100}, uint16_t{200}, uint16_t{1000}, uint16_t{65535}}) {
      EXPECT_EQ(from_file->FindString(id, kGerman), in_memory->FindString(id, kGerman))
          << name << " " << id;
    }
  }
}

TEST(FileImageBytesTest, AFileCutShortWhileOpenIsNoFault) {
  // A mapping of a file that shrinks faults when the lost pages are read;
  // a read just comes back short. What was read before the cut may still
  // answer.
  testing::TempFolder folder;
  const auto bytes = testing::FixtureBytes("Res_DE.dll");
  const std::string path = folder.File("Res_DE.dll");
  WriteFile(path, bytes, bytes.size());
  auto file = FileImageBytes::Open(path);
  ASSERT_TRUE(file);
  const auto image = pe::PeImage::Parse(file);
  ASSERT_TRUE(image);
  ASSERT_EQ(::truncate(path.c_str(), static_cast<off_t>(testing::ResourceSectionOffset(bytes))), 0);
  const auto found = image->FindString(100, kGerman);
  if (found) {
    EXPECT_EQ(*found, u"Gr\u00F6\u00DFe \u00E4ndern");
  }
  image->List();
  EXPECT_FALSE(file->Read(bytes.size() - 8, 8));
  // Cut to nothing before anything is read: no image.
  WriteFile(path, bytes, bytes.size());
  file = FileImageBytes::Open(path);
  ASSERT_TRUE(file);
  ASSERT_EQ(::truncate(path.c_str(), 0), 0);
  EXPECT_FALSE(pe::PeImage::Parse(file));
}

// The bytes the allocator has handed out and not yet taken back, large
// blocks it mapped on their own included.
long HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<long>(info.uordblks + info.hblkhd);
}

TEST(FileImageBytesTest, RepeatedReadsAcrossBlocksHoldLittleMoreThanTheFile) {
  // A damaged directory can make a lookup read one range across blocks
  // once per entry; each read handed out must stay valid, but 10,000 kept
  // copies of 8,000 bytes would be 80 MB for a file of 106 KB.
  const auto bytes = testing::FixtureBytes("Bench_100K.dll");
  auto file = FileImageBytes::Open(testing::FixturePath("Bench_100K.dll"));
  ASSERT_TRUE(file);
  const long before = HeapInUse();
  const auto first = file->Read(4000, 8000);
  ASSERT_TRUE(first);
  for (int i = 0; i < 10000; ++i) ASSERT_TRUE(file->Read(4000 + i % 7, 8000));
  EXPECT_LT(HeapInUse() - before, 3 * static_cast<long>(bytes.size()));
  // Reads before and after the reader took the whole file hold the file's
  // bytes, and the first one is still readable.
  EXPECT_TRUE(std::equal(first->begin(), first->end(), bytes.begin() + 4000));
  for (const auto& [offset, length] :
       {std::pair<uint64_t, uint64_t>{4000, 8000}, {100, 20}, {bytes.size() - 3, 3}}) {
    const auto got = file->Read(offset, length);
    ASSERT_TRUE(got);
    EXPECT_TRUE(std::equal(got->begin(), got->end(), bytes.begin() + static_cast<long>(offset)));
  }
}

TEST(FileImageBytesTest, ALibraryNamingOneLongNameEverywhereCostsLittleMoreThanItself) {
  // 656 KB whose 65,535 types all name one string of 65,535 characters:
  // each read of that name was kept, 8 GB for one lookup.
  testing::TempFolder folder;
  const auto bytes = testing::SharedLongNameLibrary();
  const std::string path = folder.File("long.dll");
  testing::WriteLibrary(path, bytes);
  const long before = HeapInUse();
  const auto image = pe::PeImage::Parse(FileImageBytes::Open(path));
  ASSERT_TRUE(image);
  const pe::ResourceId long_name{std::nullopt, testing::LongName()};
  pe::ResourceId almost = long_name;
  almost.name.back() = u'M';
  const std::array<uint16_t, 1> english{0x0409};
  EXPECT_TRUE(image->Find(long_name, {100, {}}, english));
  EXPECT_FALSE(image->Find(almost, {100, {}}, english));
  EXPECT_FALSE(image->Find({std::nullopt, u"XML"}, {100, {}}, english));
  const auto listing = image->List();
  EXPECT_EQ(listing.entries.size(), 1u);
  EXPECT_LT(HeapInUse() - before, 4 * static_cast<long>(bytes.size()));
  const auto in_memory = pe::PeImage::Parse(bytes);
  EXPECT_EQ(Listed(*image), Listed(*in_memory));
}

TEST(FileImageBytesTest, OpensOnlyRegularFilesWithContent) {
  testing::TempFolder folder;
  WriteFile(folder.File("empty.dll"), {}, 0);
  EXPECT_FALSE(FileImageBytes::Open(folder.File("empty.dll")));
  EXPECT_FALSE(FileImageBytes::Open(folder.File("missing.dll")));
  EXPECT_FALSE(FileImageBytes::Open(folder.path()));
}

}  // namespace
}  // namespace norvik50
