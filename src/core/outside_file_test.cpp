// Outside files: whatever a path names, opening returns at once and reading
// stops at the size the file had.
#include "core/outside_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

TEST(OutsideFileTest, OnlyRegularFilesAreTakenAndNothingBlocks) {
  testing::TempFolder temp;
  std::ofstream(temp.File("doc.xml"), std::ios::binary) << "<a/>";
  std::ofstream(temp.File("empty.xml"), std::ios::binary);
  ASSERT_EQ(::mkfifo(temp.File("pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(temp.File("folder"));
  std::filesystem::create_symlink(temp.File("doc.xml"), temp.File("link.xml"));
  std::filesystem::create_symlink(temp.File("pipe"), temp.File("link-to-pipe"));
  struct Case {
    std::string path;
    std::optional<std::string> content;
  } cases[] = {
      {temp.File("doc.xml"), "<a/>"},
      {temp.File("empty.xml"), ""},
      {temp.File("link.xml"), "<a/>"},  // a link to a document is that document
      {temp.File("pipe"), std::nullopt},  // nobody writes it: would block forever
      {temp.File("link-to-pipe"), std::nullopt},
      {"/dev/zero", std::nullopt},  // would be read until memory runs out
      {"/dev/null", std::nullopt},
      {temp.File("folder"), std::nullopt},
      {temp.File("missing"), std::nullopt},
      {"", std::nullopt},
  };
  for (const Case& c : cases) {
    const auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(ReadOutsideFile(c.path), c.content) << c.path;
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(2)) << c.path;
  }
}

TEST(OutsideFileTest, ReadsTheSizeItHadWhenOpened) {
  testing::TempFolder temp;
  std::ofstream(temp.File("log"), std::ios::binary) << "0123456789";
  const auto file = OutsideFile::Open(temp.File("log"));
  ASSERT_TRUE(file.has_value());
  EXPECT_EQ(file->size(), 10u);
  // It grows after opening: the reader stops where it was.
  std::ofstream(temp.File("log"), std::ios::binary | std::ios::app) << "more";
  EXPECT_EQ(file->ReadAll(), "0123456789");
  // It is cut short: what is left.
  ASSERT_EQ(::truncate(temp.File("log").c_str(), 4), 0);
  EXPECT_EQ(file->ReadAll(), "0123");
}

}  // namespace
}  // namespace norvik50
