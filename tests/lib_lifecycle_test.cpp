// The LIB object end to end: its log lines, the cached folders, the base
// key and the log members, against a real temporary folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "core/library_state.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using testing::ScopedEnv;
using testing::TempFolder;

std::vector<std::string> Lines(const std::string& content) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < content.size()) {
    const std::size_t end = content.find("\r\n", start);
    if (end == std::string::npos) {
      lines.push_back(content.substr(start) + "<no CR LF>");
      break;
    }
    lines.push_back(content.substr(start, end - start));
    start = end + 2;
  }
  return lines;
}

// The message of a log line: what follows the stamp and its padding.
std::string Message(const std::string& line) { return line.size() > 28 ? line.substr(28) : ""; }

class LibTest : public ::testing::Test {
 protected:
  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  std::string Log(const std::string& name = "nvk50err.LOG") { return temp_.Read(name); }
};

TEST_F(LibTest, CreationTruncatesAndDestructionAppends) {
  SetHostApplication(u"hostapp");
  { LIB first; first.tklLogAction(u"from the first"); }
  {
    LIB second;
    second.tklLogAction(u"from the second");
  }
  // Only the second object's lines survive: its creation truncated the log.
  const auto lines = Lines(Log());
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(Message(lines[0]), "hostapp initialized.");
  EXPECT_EQ(Message(lines[1]), "from the second");
  EXPECT_EQ(Message(lines[2]), "hostapp terminated.");
}

TEST_F(LibTest, LogLineHasStampAndPrintZone) {
  LIB lib;
  lib.tklLogError(5, u"Invalid procedure call", u"LIB:tkrGetValue()");
  const auto lines = Lines(Log());
  ASSERT_EQ(lines.size(), 2u);
  // "dd.mm.yyyy hh:nn", 12 spaces, the message from column 29.
  EXPECT_TRUE(std::regex_match(
      lines[1], std::regex(R"(\d\d\.\d\d\.\d{4} \d\d:\d\d {12}ERR=5 'Invalid procedure call' \(Source=LIB:tkrGetValue\(\)\))")))
      << lines[1];
}

TEST_F(LibTest, NamedLogTruncatesUnnamedAppends) {
  LIB lib;
  lib.tklLogAction(u"m1", u"x");
  lib.tklLogAction(u"m2");
  auto lines = Lines(Log("x.LOG"));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(Message(lines[0]), "m1");
  EXPECT_EQ(Message(lines[1]), "m2");
  lib.tklLogAction(u"m3", u"x");
  lines = Lines(Log("x.LOG"));
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(Message(lines[0]), "m3");
  // The object's log name stays x, so its termination line goes there too.
  EXPECT_EQ(lib.current_log_name(), u"x");
}

TEST_F(LibTest, BareLogNameWithExtensionWritesNothing) {
  LIB lib;
  // "trace.log" already ends in .LOG in any case: the path becomes the
  // temporary folder itself and nothing is written, which hosts use to
  // switch logging off.
  lib.tklLogAction(u"lost", u"trace.log");
  lib.tklLogAction(u"lost too");
  EXPECT_FALSE(std::filesystem::exists(temp_.File("trace.log")));
  EXPECT_FALSE(std::filesystem::exists(temp_.File("trace.log.LOG")));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(temp_.path()),
                          std::filesystem::directory_iterator()),
            1);  // only nvk50err.LOG
}

TEST_F(LibTest, LogNameWithBackslashIsAFullPath) {
  LIB lib;
  const std::u16string windows_path =
      ToWindowsPath(temp_.File("app.txt")).value();  // Z:\...\app.txt
  lib.tklLogAction(u"to a full path", windows_path);
  const auto lines = Lines(temp_.Read("app.txt"));  // no ".LOG" added
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(Message(lines[0]), "to a full path");
}

TEST_F(LibTest, LogFailuresAreSilent) {
  LIB lib;
  // An unmapped drive and a missing folder lose the line, never throw.
  EXPECT_NO_THROW(lib.tklLogAction(u"m", u"Q:\\nowhere\\x.log"));
  EXPECT_NO_THROW(lib.tklLogAction(u"m", u"Z:\\no\\such\\folder\\x.log"));
}

TEST_F(LibTest, LogIsWindows1252) {
  LIB lib;
  lib.tklLogAction(u"Gr\u00FC\u00DFe \u20AC \u4E2D", u"enc");
  const std::string content = temp_.Read("enc.LOG");
  // ü ß € as single bytes; a character the code page lacks becomes '?'.
  EXPECT_NE(content.find("Gr\xFC\xDF" "e \x80 ?\r\n"), std::string::npos);
}

TEST_F(LibTest, TempDirEndsInOneBackslashAndIsCached) {
  ScopedEnv slash("TMPDIR", temp_.path() + "/");
  LIB lib;
  const std::u16string first = lib.tklTempDir();
  ASSERT_GE(first.size(), 2u);
  EXPECT_EQ(first.back(), u'\\');
  EXPECT_NE(first[first.size() - 2], u'\\');
  ScopedEnv other("TMPDIR", "/var");
  EXPECT_EQ(lib.tklTempDir(), first);  // never refreshed
}

TEST_F(LibTest, SystemDirHasNoTrailingSeparatorAndIsCached) {
  ScopedEnv windir("NORVIK50_WINDIR", temp_.path() + "/");
  LIB lib;
  const std::u16string dir = lib.tklSystemDir();
  EXPECT_EQ(dir, ToWindowsPath(temp_.path()).value());
  ScopedEnv changed("NORVIK50_WINDIR", "/usr");
  EXPECT_EQ(lib.tklSystemDir(), dir);
}

TEST_F(LibTest, RegKeyDefaultsAndIsSharedByObjects) {
  LIB a;
  LIB b;
  EXPECT_EQ(a.tklRegKey(), u"SOFTWARE\\VANTEX\\Global");
  a.tklRegKey(u"SOFTWARE\\Other");
  EXPECT_EQ(b.tklRegKey(), u"SOFTWARE\\Other");  // library-wide, not per object
  b.tklRegKey(u"");
  EXPECT_EQ(a.tklRegKey(), u"SOFTWARE\\VANTEX\\Global");
}

// Records what the standard message dialog was asked to show.
class RecordingUi : public UserInterface {
 public:
  int32_t ShowStandardMessage(std::u16string_view prompt, std::u16string_view detail,
                              int32_t style, std::u16string_view title) override {
    prompt_ = prompt;
    detail_ = detail;
    style_ = style;
    title_ = title;
    return 1;
  }
  std::u16string prompt_, detail_, title_;
  int32_t style_ = 0;
};

TEST_F(LibTest, ErrorMsgHeadingAndTitle) {
  auto ui = std::make_shared<RecordingUi>();
  SetUserInterface(ui);
  SetHostApplication(u"hostapp", u"Host Title");
  ScopedEnv store{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  LIB lib;
  // The heading follows the user's stored language.
  lib.tkrSetValue(HKEY_CURRENT_USER, lib.tklRegKey(), u"Language", Variant(int32_t{LANG_ENGLISH}));
  lib.tklErrorMsg(-2147467259, u"Unspecified", u"");
  EXPECT_EQ(ui->prompt_, u"Runtime error '&H80004005':");
  EXPECT_EQ(ui->detail_, u"Unspecified");
  EXPECT_EQ(ui->style_, 48);
  EXPECT_EQ(ui->title_, u"Host Title");  // an empty source takes the host's title
  lib.tklLogError(13, u"Type mismatch", u"LIB:x()", true);
  EXPECT_EQ(ui->prompt_, u"Runtime error '13':");
  EXPECT_EQ(ui->title_, u"LIB:x()");
  lib.tkrSetValue(HKEY_CURRENT_USER, lib.tklRegKey(), u"Language", Variant(int32_t{LANG_GERMAN}));
  lib.tklErrorMsg(-2147467259, u"Unspecified", u"src");
  EXPECT_EQ(ui->prompt_, u"Laufzeitfehler '&H80004005':");
  // With no language stored at all, German is taken (and stored).
  lib.tkrSetValue(HKEY_CURRENT_USER, lib.tklRegKey(), u"Language", Variant(u"-"));
  lib.tklErrorMsg(5, u"x", u"y");
  EXPECT_EQ(ui->prompt_, u"Laufzeitfehler '5':");
  EXPECT_EQ(lib.tkrGetLong(HKEY_CURRENT_USER, lib.tklRegKey(), u"Language"), LANG_GERMAN);
  SetUserInterface(nullptr);
  // Headless: the dialog fails cleanly and never blocks.
  EXPECT_NO_THROW(lib.tklErrorMsg(5, u"x", u"y"));
}

}  // namespace
}  // namespace norvik50
