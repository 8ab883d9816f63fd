// The PE resource reader on real resource libraries of both bitnesses and
// on damaged copies of them.
#include "resources/pe_image.h"

#include <gtest/gtest.h>

#include <array>

#include "resources/damaged_libraries_for_tests.h"
#include "resources/resource_fixtures_for_tests.h"
#include "resources/resource_languages.h"

namespace norvik50::pe {
namespace {

using testing::FixtureBytes;

constexpr std::array<uint16_t, 1> kGerman{0x0407};
constexpr std::array<uint16_t, 1> kEnglish{0x0409};
constexpr std::array<uint16_t, 1> kFrench{0x040C};
constexpr std::array<uint16_t, 0> kNone{};

std::string Text(const std::optional<std::span<const uint8_t>>& data) {
  return data ? std::string(data->begin(), data->end()) : "<absent>";
}

ResourceId Id(std::u16string_view text) { return *ParseResourceId(text); }

TEST(ParseResourceIdTest, TakesTheFormsAResourceCallTakes) {
  EXPECT_EQ(ParseResourceId(u"#100"), (ResourceId{100, {}}));
  EXPECT_EQ(ParseResourceId(u"#0"), (ResourceId{0, {}}));
  EXPECT_EQ(ParseResourceId(u"#65535"), (ResourceId{65535, {}}));
  // Names are compared in upper case.
  EXPECT_EQ(ParseResourceId(u"xml"), (ResourceId{std::nullopt, u"XML"}));
  EXPECT_EQ(ParseResourceId(u"100"), (ResourceId{std::nullopt, u"100"}));
  // No number after "#", or one beyond 16 bits, names nothing.
  EXPECT_EQ(ParseResourceId(u"#"), std::nullopt);
  EXPECT_EQ(ParseResourceId(u"#65536"), std::nullopt);
  EXPECT_EQ(ParseResourceId(u"#1a"), std::nullopt);
  EXPECT_EQ(ParseResourceId(u""), std::nullopt);
  EXPECT_EQ(ResourceIdText(ResourceId{7, {}}), u"#7");
  EXPECT_EQ(ResourceIdText(ResourceId{std::nullopt, u"FORMS"}), u"FORMS");
}

// The same script linked as PE32 and as PE32+.
class MultiLanguageTest : public ::testing::TestWithParam<const char*> {
 protected:
  std::vector<uint8_t> bytes_ = FixtureBytes(GetParam());
  std::optional<PeImage> image_ = PeImage::Parse(bytes_);
};

INSTANTIATE_TEST_SUITE_P(Bitness, MultiLanguageTest,
                         ::testing::Values("multi32.dll", "multi64.dll"));

TEST_P(MultiLanguageTest, ParsesBothBitnesses) {
  ASSERT_TRUE(image_);
  EXPECT_EQ(image_->is_pe32_plus(), std::string(GetParam()) == "multi64.dll");
}

TEST_P(MultiLanguageTest, PicksTheLanguageOfAStringBlock) {
  ASSERT_TRUE(image_);
  EXPECT_EQ(image_->FindString(200, kGerman), u"Hallo");
  EXPECT_EQ(image_->FindString(200, kEnglish), u"Hello");
  EXPECT_EQ(image_->FindString(200, kFrench), u"Bonjour");
  // No preferred language present: the first language entry (German,
  // the lowest id) is taken.
  EXPECT_EQ(image_->FindString(200, kNone), u"Hallo");
  // The language is chosen for the whole block of sixteen: the German block
  // holding 200 has no 201, so 201 is empty there although English has it.
  EXPECT_EQ(image_->FindString(201, kGerman), u"");
  EXPECT_EQ(image_->FindString(201, kEnglish), u"Only English");
  // A language-neutral block serves every preference.
  EXPECT_EQ(image_->FindString(300, kFrench), u"Neutral");
  // A block that does not exist at all.
  EXPECT_EQ(image_->FindString(5000, kGerman), std::nullopt);
}

TEST_P(MultiLanguageTest, FollowsTheLoadersLanguageOrderForALocale) {
  ASSERT_TRUE(image_);
  // Italian is not in the library: English (US) is the loader's fallback.
  EXPECT_EQ(image_->FindString(200, PreferredResourceLanguages("it-IT")), u"Hello");
  EXPECT_EQ(image_->FindString(200, PreferredResourceLanguages("de-AT")), u"Hallo");
  EXPECT_EQ(image_->FindString(200, PreferredResourceLanguages("fr-FR")), u"Bonjour");
}

TEST_P(MultiLanguageTest, FindsCustomResourcesByNameAndNumber) {
  ASSERT_TRUE(image_);
  EXPECT_EQ(Text(image_->Find(Id(u"forms"), Id(u"Main"), kEnglish)).substr(0, 11), "<resources>");
  // The German form starts with a UTF-8 byte-order mark.
  EXPECT_EQ(Text(image_->Find(Id(u"FORMS"), Id(u"MAIN"), kGerman)).substr(0, 4), "\xEF\xBB\xBF<");
  EXPECT_EQ(Text(image_->Find(Id(u"XML"), Id(u"#100"), kEnglish)), "abc<def>");
  EXPECT_EQ(Text(image_->Find(Id(u"#10"), Id(u"#7"), kNone)), "abc<def>");
  EXPECT_EQ(image_->Find(Id(u"XML"), Id(u"#101"), kNone), std::nullopt);
  EXPECT_EQ(image_->Find(Id(u"#11"), Id(u"#7"), kNone), std::nullopt);
  EXPECT_EQ(image_->Find(Id(u"FORMS"), Id(u"#1"), kNone), std::nullopt);
}

TEST_P(MultiLanguageTest, ListsEveryResource) {
  ASSERT_TRUE(image_);
  const auto listing = image_->List();
  EXPECT_TRUE(listing.complete);
  const auto& entries = listing.entries;
  ASSERT_EQ(entries.size(), 8u);
  EXPECT_EQ(*entries[0].type, Id(u"FORMS"));
  EXPECT_EQ(*entries[0].name, Id(u"MAIN"));
  EXPECT_EQ(entries[0].language, 0x0407);
  EXPECT_EQ(entries[1].language, 0x0409);
  EXPECT_EQ(*entries[2].type, Id(u"XML"));
  EXPECT_EQ(entries[2].size, 8u);
  // The two languages of FORMS/MAIN share the ids.
  EXPECT_EQ(entries[0].type, entries[1].type);
  EXPECT_EQ(entries[0].name, entries[1].name);
}

// The linker packs directories, names and data entries without gaps, so a
// listing of a real library never needs more than its resource section.
TEST(PeImageTest, RealLibrariesAreListedInFull) {
  for (const char* name : {"Res_DE.dll", "Res_EN.dll", "Bench_100K.dll"}) {
    const auto bytes = FixtureBytes(name);
    const auto image = PeImage::Parse(bytes);
    ASSERT_TRUE(image) << name;
    const auto listing = image->List();
    EXPECT_TRUE(listing.complete) << name;
    EXPECT_FALSE(listing.entries.empty()) << name;
  }
}

TEST(PeImageTest, ReadsStringTablesExactly) {
  const auto bytes = FixtureBytes("Res_DE.dll");
  const auto image = PeImage::Parse(bytes);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->FindString(100, kGerman), u"Größe ändern");
  EXPECT_EQ(image->FindString(101, kGerman), u"");                       // an empty string
  EXPECT_EQ(image->FindString(99, kGerman), u"");                        // a gap in a present block
  EXPECT_EQ(image->FindString(17, kGerman), u"Siebzehn");                // slot 1 of block 2
  EXPECT_EQ(image->FindString(65535, kGerman), u"Letzte Zeichenkette");  // block 4096
  EXPECT_EQ(image->FindString(1000, kGerman), std::nullopt);
}

// Damaged copies of a good library: each must parse to nothing or answer
// "absent", never read outside the bytes (the fuzz target runs this under
// the sanitizers with random damage).
TEST(PeImageTest, RejectsWhatIsNoImage) {
  auto bytes = FixtureBytes("multi64.dll");
  EXPECT_FALSE(PeImage::Parse(std::span<const uint8_t>(bytes.data(), 63)));
  auto damaged = bytes;
  damaged[0] = 'X';
  EXPECT_FALSE(PeImage::Parse(damaged));
  damaged = bytes;
  damaged[0x3C] = 0xF0;  // the PE header would lie past the end
  damaged[0x3D] = 0xFF;
  EXPECT_FALSE(PeImage::Parse(damaged));
}

TEST(PeImageTest, EveryTruncationIsSafe) {
  for (const char* name : {"multi32.dll", "multi64.dll"}) {
    const auto bytes = FixtureBytes(name);
    const std::size_t rsrc = testing::ResourceSectionOffset(bytes);
    ASSERT_GT(rsrc, 0u);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      const auto image = PeImage::Parse(std::span<const uint8_t>(bytes.data(), size));
      // Up to the resource directory's header the image cannot be parsed.
      if (size < rsrc + 16) {
        EXPECT_FALSE(image) << name << " cut at " << size;
        continue;
      }
      if (!image) continue;
      const auto found = image->FindString(200, kGerman);
      if (found) {
        EXPECT_EQ(*found, u"Hallo") << name << " cut at " << size;
      }
      image->List();
    }
  }
}

TEST(PeImageTest, ACyclicDirectoryEnds) {
  auto bytes = FixtureBytes("multi64.dll");
  const std::size_t rsrc = testing::ResourceSectionOffset(bytes);
  // Point every entry of the type directory back at the root directory.
  const std::size_t entries =
      (bytes[rsrc + 12] | bytes[rsrc + 13] << 8) + (bytes[rsrc + 14] | bytes[rsrc + 15] << 8);
  for (std::size_t i = 0; i < entries; ++i) {
    const std::size_t at = rsrc + 16 + i * 8 + 4;
    bytes[at] = bytes[at + 1] = bytes[at + 2] = 0;
    bytes[at + 3] = 0x80;
  }
  const auto image = PeImage::Parse(bytes);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->FindString(200, kGerman), std::nullopt);
  EXPECT_TRUE(image->List().entries.empty());
}

TEST(PeImageTest, ASizeThatLiesGivesNothing) {
  auto bytes = FixtureBytes("multi64.dll");
  const auto image = PeImage::Parse(bytes);
  ASSERT_TRUE(image);
  // Find the data entry of RCDATA #7 by its size (8) and make it huge.
  const std::size_t rsrc = testing::ResourceSectionOffset(bytes);
  bool patched = false;
  for (std::size_t at = rsrc; at + 16 <= bytes.size() && !patched; at += 4) {
    if (bytes[at + 4] == 8 && bytes[at + 5] == 0 && bytes[at + 6] == 0 && bytes[at + 7] == 0 &&
        bytes[at + 1] == 0x33 && bytes[at] == 0x50) {  // RVA 0x3350 as the fixture places it
      bytes[at + 7] = 0x7F;
      patched = true;
    }
  }
  ASSERT_TRUE(patched);
  const auto damaged = PeImage::Parse(bytes);
  ASSERT_TRUE(damaged);
  EXPECT_EQ(damaged->Find(Id(u"#10"), Id(u"#7"), kNone), std::nullopt);
  EXPECT_EQ(Text(damaged->Find(Id(u"XML"), Id(u"#100"), kNone)), "abc<def>");
}

// 65,535 types naming one string of 65,535 characters: every lookup and
// the listing compare or read that string once, not once per entry (which
// was 4 billion character comparisons, or 8 GB of copies).
TEST(DamagedLibraryTest, OneLongNameSharedByEveryTypeIsReadOnce) {
  const auto bytes = testing::SharedLongNameLibrary();
  const auto image = PeImage::Parse(bytes);
  ASSERT_TRUE(image);
  const ResourceId long_name{std::nullopt, testing::LongName()};
  ResourceId almost = long_name;  // the same length, the last letter differs
  almost.name.back() = u'M';
  const std::string data(testing::kLongNameData);
  EXPECT_EQ(Text(image->Find(long_name, Id(u"#100"), kEnglish)), data);
  EXPECT_EQ(Text(image->Find(long_name, long_name, kNone)), data);
  EXPECT_EQ(image->Find(almost, Id(u"#100"), kEnglish), std::nullopt);
  EXPECT_EQ(image->Find(long_name, almost, kEnglish), std::nullopt);
  EXPECT_EQ(image->Find(Id(u"XML"), Id(u"#100"), kEnglish), std::nullopt);

  // The listing holds the name once: the type and the name of the one
  // resource are the same string in the file.
  const auto listing = image->List();
  EXPECT_TRUE(listing.complete);
  ASSERT_EQ(listing.entries.size(), 1u);
  EXPECT_EQ(*listing.entries[0].type, long_name);
  EXPECT_EQ(listing.entries[0].type, listing.entries[0].name);
  EXPECT_EQ(listing.entries[0].size, data.size());
}

// Directories inside one shared table each span tens of thousands of the
// table's entries: walked in full, a 1 MB file meant two billion entries.
// The listing stops once it has visited more than the section can hold.
TEST(DamagedLibraryTest, OverlappingDirectoriesEndTheListing) {
  const auto bytes = testing::OverlappingDirectoriesLibrary(36000);
  const auto image = PeImage::Parse(bytes);
  ASSERT_TRUE(image);
  const auto listing = image->List();
  EXPECT_FALSE(listing.complete);
  ASSERT_EQ(listing.entries.size(), 1u);  // every directory leads to the same resource
  EXPECT_EQ(*listing.entries[0].type, Id(u"#1"));
  EXPECT_EQ(listing.entries[0].language, 0x0409);
  // A lookup walks three directories, overlapping or not.
  EXPECT_EQ(Text(image->Find(Id(u"#1"), Id(u"#1"), kEnglish)), "data");
  EXPECT_EQ(Text(image->Find(Id(u"#36000"), Id(u"#1"), kNone)), "data");

  // One such directory spanning almost the whole section is listed in
  // full: the limit is the section's size, not a guess below it.
  const auto one = testing::OverlappingDirectoriesLibrary(1);
  const auto single = PeImage::Parse(one);
  ASSERT_TRUE(single);
  const auto whole = single->List();
  EXPECT_TRUE(whole.complete);
  EXPECT_EQ(whole.entries.size(), 1u);
}

}  // namespace
}  // namespace norvik50::pe
