// The database files themselves: where they lie, who may write them, and
// what happens to files that are not ours or are damaged.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <SQLiteCpp/Database.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "norvik50/encoding.h"
#include "settings/sqlite_store.h"
#include "settings/store_location.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

using testing::ScopedEnv;
using testing::TempFolder;

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

TEST(StoreLocationTest, FoldersByRootAndEnvironment) {
  TempFolder home;
  ScopedEnv no_dir("NORVIK50_REGISTRY_DIR", std::nullopt);
  ScopedEnv xdg("XDG_CONFIG_HOME", std::nullopt);
  ScopedEnv h("HOME", home.path());
  // Without XDG_CONFIG_HOME the per-user store lies in ~/.config.
  EXPECT_EQ(StoreFileFor(HKEY_CURRENT_USER)->path,
            home.path() + "/.config/norvik50/HKEY_CURRENT_USER.db");
  {
    ScopedEnv set_xdg("XDG_CONFIG_HOME", home.File("cfg/"));
    const auto user = StoreFileFor(HKEY_CURRENT_USER);
    EXPECT_EQ(user->path, home.path() + "/cfg/norvik50/HKEY_CURRENT_USER.db");
    EXPECT_TRUE(user->private_file);
  }
  // Machine-wide roots live in /etc, shared for reading.
  const auto machine = StoreFileFor(HKEY_LOCAL_MACHINE);
  EXPECT_EQ(machine->path, "/etc/norvik50/HKEY_LOCAL_MACHINE.db");
  EXPECT_FALSE(machine->private_file);
  EXPECT_EQ(StoreFileFor(HKEY_CLASSES_ROOT)->path, "/etc/norvik50/HKEY_CLASSES_ROOT.db");
  EXPECT_FALSE(StoreFileFor(HKEY_PERFORMANCE_DATA).has_value());
  EXPECT_FALSE(StoreFileFor(42).has_value());
  // One folder for all roots overrides both; each root keeps its nature.
  ScopedEnv dir("NORVIK50_REGISTRY_DIR", home.File("all"));
  EXPECT_EQ(StoreFileFor(HKEY_LOCAL_MACHINE)->path, home.path() + "/all/HKEY_LOCAL_MACHINE.db");
  EXPECT_FALSE(StoreFileFor(HKEY_LOCAL_MACHINE)->private_file);
  EXPECT_TRUE(StoreFileFor(HKEY_CURRENT_USER)->private_file);
}

TEST(StoreLocationTest, PerUserStoreIsCreatedPrivate) {
  TempFolder home;
  ScopedEnv no_dir("NORVIK50_REGISTRY_DIR", std::nullopt);
  ScopedEnv xdg("XDG_CONFIG_HOME", home.path());
  SqliteStore store;
  RegKey key = 0;
  ASSERT_EQ(store.CreateKey(HKEY_CURRENT_USER, u"X", 0, 63, key, nullptr), 0);
  struct stat st {};
  ASSERT_EQ(::stat(home.File("norvik50").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0700u);
  ASSERT_EQ(::stat(home.File("norvik50/HKEY_CURRENT_USER.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
}

class StoreFilesTest : public ::testing::Test {
 protected:
  TempFolder dir_;
  ScopedEnv env_{"NORVIK50_REGISTRY_DIR", dir_.path()};
  std::string user_file_ = dir_.File("HKEY_CURRENT_USER.db");
};

// Files that are not our store are reported and left exactly as they were.
TEST_F(StoreFilesTest, ForeignOrDamagedFilesAreReportedAndNeverWritten) {
  std::string sqlite_damaged;
  {
    // A real database whose pages are then overwritten in the middle.
    SQLite::Database db(dir_.File("seed.db"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db.exec("CREATE TABLE t(x); INSERT INTO t VALUES(randomblob(20000));");
  }
  sqlite_damaged = dir_.Read("seed.db");
  for (std::size_t i = 1024; i < sqlite_damaged.size(); i += 7) sqlite_damaged[i] = '\x5A';
  std::string other_program;
  {
    SQLite::Database db(dir_.File("other.db"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db.exec("CREATE TABLE contacts(name TEXT)");
  }
  other_program = dir_.Read("other.db");
  struct Case {
    const char* what;
    std::string bytes;
    const char* message_part;
  } cases[] = {
      {"a text file", "[Settings]\nA=1\n", "is not a SQLite database"},
      {"a short file", "SQLite", "is not a SQLite database"},
      {"another program's database", other_program, "belongs to another program"},
      {"a damaged database", sqlite_damaged, "damaged"},
  };
  for (const auto& c : cases) {
    WriteFile(user_file_, c.bytes);
    SqliteStore store;
    RegKey key = 0;
    EXPECT_EQ(store.CreateKey(HKEY_CURRENT_USER, u"Software", 0, 63, key, nullptr), 1011) << c.what;
    const std::string problem = ToUtf8(store.TakeProblem());
    EXPECT_NE(problem.find(c.message_part), std::string::npos) << c.what << ": " << problem;
    EXPECT_NE(problem.find(user_file_), std::string::npos) << problem;
    EXPECT_EQ(store.TakeProblem(), u"");  // reported once per failure
    EXPECT_EQ(store.OpenKey(HKEY_CURRENT_USER, u"Software", KEY_QUERY_VALUE, key), 1011);
    EXPECT_EQ(dir_.Read("HKEY_CURRENT_USER.db"), c.bytes) << c.what << " was changed";
  }
}

// Opening reads no more than the file's header and schema, so damage deep
// in the file is met by the operation that reads it: it is reported then
// (1011, with the path and what a full check finds), and from then on
// nothing is written to the file, not even where it is sound.
TEST_F(StoreFilesTest, DamageMetLaterIsReportedAndNothingIsWrittenAfter) {
  {
    SqliteStore store;
    RegKey key = 0;
    ASSERT_EQ(store.CreateKey(HKEY_CURRENT_USER, u"Software\\Many", 0, 63, key, nullptr), 0);
    const std::string text(200, 'x');
    for (int i = 0; i < 2000; ++i) {
      ASSERT_EQ(store.SetValue(key, u"v" + FromUtf8(std::to_string(i)), REG_SZ, text), 0);
    }
    ASSERT_EQ(store.FlushKey(key), 0);  // every page in the file itself
  }
  // A page in the middle of the values, its header and cells overwritten.
  std::string bytes = dir_.Read("HKEY_CURRENT_USER.db");
  const std::size_t page = 4096, middle = (bytes.size() / page / 2) * page;
  ASSERT_GT(bytes.size(), 40 * page);
  for (std::size_t i = middle; i < middle + page; i += 3) bytes[i] = '\x5A';
  WriteFile(user_file_, bytes);

  SqliteStore store;
  RegKey key = 0;
  // The header and schema are sound: the store opens, and sound pages read.
  ASSERT_EQ(store.OpenKey(HKEY_CURRENT_USER, u"Software\\Many", KEY_QUERY_VALUE, key), 0);
  std::u16string name;
  int32_t type = 0, code = 0;
  std::string data;
  uint32_t index = 0;
  while ((code = store.EnumValue(key, index, name, type, data)) == 0) ++index;
  EXPECT_EQ(code, 1011) << "the walk went through the damaged page unnoticed";
  EXPECT_LT(index, 2000u);
  const std::string problem = ToUtf8(store.TakeProblem());
  EXPECT_NE(problem.find(user_file_ + " is damaged"), std::string::npos) << problem;
  EXPECT_NE(problem.find("integrity check: "), std::string::npos) << problem;
  EXPECT_NE(problem.find("left untouched"), std::string::npos) << problem;
  // Writes anywhere are refused now, reads too; the file stays as it was.
  RegKey other = 0;
  EXPECT_EQ(store.CreateKey(HKEY_CURRENT_USER, u"Elsewhere", 0, 63, other, nullptr), 1011);
  EXPECT_EQ(store.QueryValue(key, u"v0", 1024, type, data), 1011);
  EXPECT_TRUE(dir_.Read("HKEY_CURRENT_USER.db") == bytes) << "the damaged file was written";
}

TEST_F(StoreFilesTest, OnlyTheOwnerWithWritePermissionWrites) {
  {
    SqliteStore store;
    RegKey key = 0;
    ASSERT_EQ(store.CreateKey(HKEY_LOCAL_MACHINE, u"Shared", 0, 63, key, nullptr), 0);
    ASSERT_EQ(store.SetValue(key, u"v", REG_SZ, "machine"), 0);
  }
  const std::string file = dir_.File("HKEY_LOCAL_MACHINE.db");
  ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
  SqliteStore store;
  RegKey key = 0;
  // Reading goes on; every kind of write is refused with 5 (even for root,
  // who the file system would let through).
  ASSERT_EQ(store.OpenKey(HKEY_LOCAL_MACHINE, u"Shared", KEY_QUERY_VALUE, key), 0);
  int32_t type = 0;
  std::string data;
  EXPECT_EQ(store.QueryValue(key, u"v", 1024, type, data), 0);
  EXPECT_EQ(store.SetValue(key, u"v", REG_SZ, "x"), 5);
  EXPECT_EQ(store.DeleteValue(key, u"v"), 5);
  RegKey created = 0;
  EXPECT_EQ(store.CreateKey(HKEY_LOCAL_MACHINE, u"New", 0, 63, created, nullptr), 5);
  EXPECT_EQ(store.DeleteKey(HKEY_LOCAL_MACHINE, u"Shared"), 5);
  RegKey for_write = 0;
  EXPECT_EQ(store.OpenKey(HKEY_LOCAL_MACHINE, u"Shared", KEY_SET_VALUE, for_write), 5);
  // Said once, as a refusal (5) with its reason, not as a damaged file.
  const StoreProblem problem = store.TakeStoreProblem();
  EXPECT_EQ(problem.number, 5);
  EXPECT_NE(ToUtf8(problem.description)
                .find(file + " cannot be written by this user: it is "
                             "read-only (mode 0444)"),
            std::string::npos)
      << ToUtf8(problem.description);
  EXPECT_EQ(store.SetValue(key, u"v", REG_SZ, "x"), 5);
  EXPECT_EQ(store.TakeStoreProblem().number, 0);
  EXPECT_EQ(store.QueryValue(key, u"v", 1024, type, data), 0);
  EXPECT_EQ(data, std::string("machine\0", 8));
  ::chmod(file.c_str(), 0600);
}

TEST_F(StoreFilesTest, AFolderThatCannotBeCreatedRefusesWrites) {
  // A plain file where the folder should be: nobody can create the store.
  WriteFile(dir_.File("blocked"), "x");
  ScopedEnv env("NORVIK50_REGISTRY_DIR", dir_.File("blocked"));
  SqliteStore store;
  RegKey key = 0;
  EXPECT_EQ(store.CreateKey(HKEY_CURRENT_USER, u"A", 0, 63, key, nullptr), 5);
  EXPECT_EQ(store.OpenKey(HKEY_CURRENT_USER, u"A", KEY_QUERY_VALUE, key), 2);
}

// A commit lives in the write-ahead log until SQLite copies it back; after
// a flush the database file alone holds it (and both were synced), so the
// value survives whatever happens to the log.
TEST_F(StoreFilesTest, AFlushPutsEveryCommitIntoTheDatabaseFile) {
  SqliteStore store;
  RegKey key = 0;
  ASSERT_EQ(store.CreateKey(HKEY_CURRENT_USER, u"Software\\App", 0, 63, key, nullptr), 0);
  ASSERT_EQ(store.SetValue(key, u"Saved", REG_SZ, "before the power cut"), 0);
  auto file_alone_holds_it = [&] {
    TempFolder copy;
    std::filesystem::copy_file(user_file_, copy.File("alone.db"));
    SQLite::Database db(copy.File("alone.db"), SQLite::OPEN_READONLY);
    // Without the log even the tables may be missing from the file.
    if (!db.tableExists("vals")) return false;
    SQLite::Statement s(db, "SELECT count(*) FROM vals WHERE fold='saved'");
    return s.executeStep() && s.getColumn(0).getInt() == 1;
  };
  EXPECT_FALSE(file_alone_holds_it())
      << "the commit was in the file already; the test proves nothing";
  EXPECT_EQ(store.FlushKey(key), 0);
  EXPECT_TRUE(file_alone_holds_it());
  // Through the library's entry point, for a root and for unknown handles.
  EXPECT_EQ(FlushSettings(HKEY_CURRENT_USER), 0);
  EXPECT_EQ(store.FlushKey(987654), 1010);
  // A root without a file has nothing to flush, and no file is made.
  EXPECT_EQ(store.FlushKey(HKEY_USERS), 0);
  EXPECT_FALSE(std::filesystem::exists(dir_.File("HKEY_USERS.db")));
}

}  // namespace
}  // namespace norvik50::settings
