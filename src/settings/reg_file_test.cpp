// .reg files: a hand-written Windows file, exact round trips in both
// formats (from the local files and from a settings server), and the
// errors of malformed files.
#include "settings/reg_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "norvik50/encoding.h"
#include "settings/pg_server_for_tests.h"
#include "settings/reg_transfer.h"
#include "settings/sqlite_store.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

using namespace std::string_literals;

std::string Fixture(const std::string& name) {
  const char* root = std::getenv("NORVIK50_TESTDATA");
  std::ifstream in(std::string(root ? root : "testdata") + "/settings/" + name, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

class RegFileTest : public ::testing::TestWithParam<StoreKind> {
 protected:
  void SetUp() override {
    if (GetParam() == StoreKind::kLocal) return;
    NORVIK50_NEED_TEST_SERVER();
    EmptyServer();
  }
  static std::shared_ptr<RegistryStore> Connect() {
    if (GetParam() == StoreKind::kLocal) return std::make_shared<SqliteStore>();
    return ServerStore("desk");
  }

  testing::TempFolder dir_;
  testing::ScopedEnv env_{"NORVIK50_REGISTRY_DIR", dir_.path()};
  std::shared_ptr<RegistryStore> owned_ = Connect();
  RegistryStore& store_ = *owned_;

  void Put(int32_t root, std::u16string_view path, std::u16string_view name, int32_t type,
           const std::string& data) {
    RegKey key = 0;
    ASSERT_EQ(store_.CreateKey(root, path, 0, 63, key, nullptr), 0);
    ASSERT_EQ(store_.SetValue(key, name, type, data), 0);
    store_.CloseKey(key);
  }
  std::pair<int32_t, std::string> Get(int32_t root, std::u16string_view path,
                                      std::u16string_view name) {
    RegKey key = 0;
    if (store_.OpenKey(root, path, KEY_QUERY_VALUE, key) != 0) return {-1, "no key"};
    int32_t type = -1;
    std::string data;
    if (store_.QueryValue(key, name, 1 << 20, type, data) != 0) type = -1;
    store_.CloseKey(key);
    return {type, data};
  }
};

TEST_P(RegFileTest, AWindowsFileImportsToTypedValues) {
  constexpr auto HK = HKEY_CURRENT_USER;
  Put(HK, u"Software\\Vantex\\Global", u"Old", REG_SZ, "old");
  Put(HK, u"Software\\Vantex\\Obsolete\\Deep", u"x", REG_SZ, "x");
  RegParseError error;
  const auto file = ParseRegFile(Fixture("windows5.reg"), error);
  ASSERT_TRUE(file) << error.line << ": " << error.message;
  EXPECT_EQ(file->format, RegFormat::kVersion5);
  std::u16string failed;
  ASSERT_EQ(ImportKeys(store_, *file, failed), 0) << ToUtf8(failed);

  const std::u16string g = u"Software\\Vantex\\Global";
  struct Case {
    std::u16string name;
    int32_t type;
    std::string data;
  } cases[] = {
      {u"Language", REG_DWORD, "\x02\0\0\0"s},
      {u"", REG_SZ, "Standard\0"s},                           // @=
      {u"Pfad", REG_SZ, "C:\\Programme\\Vantex \"Neu\"\0"s},  // \\ and \" escapes
      {u"Grüße", REG_SZ, "\xc3\x84\xe2\x82\xac\xc3\x9f\0"s},  // UTF-16 text, to UTF-8
      {u"Leer", REG_SZ, "\0"s},
      {u"Blob", REG_BINARY, "\x01\xff\x10\0"s},
      {u"Expand", REG_EXPAND_SZ, "%TEMP%\\x\0"s},     // hex(2): UTF-16LE
      {u"Multi", REG_MULTI_SZ, "ab\0c\0\0"s},         // hex(7)
      {u"Big", REG_DWORD_BIG_ENDIAN, "\0\0\0\x2a"s},  // hex(N), bytes as given
      {u"Quad", 11, "\x01\x02\x03\x04\x05\x06\x07\x08"s},
      {u"None", REG_NONE, ""},
      {u"Old", -1, ""},  // "name"=- deleted it
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Get(HK, g, c.name), std::make_pair(c.type, c.data)) << ToUtf8(c.name);
  }
  std::string ramp;
  for (int i = 0; i < 32; ++i) ramp.push_back(static_cast<char>(i));
  EXPECT_EQ(Get(HK, g, u"long"), std::make_pair(int32_t{REG_BINARY}, ramp));  // continued line
  EXPECT_EQ(Get(HK, g + u"\\Positions\\Forms\\ZoomWindow", u"Height"),
            std::make_pair(int32_t{REG_DWORD}, "\xff\xff\xff\xff"s));
  EXPECT_EQ(Get(HKEY_LOCAL_MACHINE, u"software\\vantex\\global", u"ResourceDLL").second,
            "C:\\Vantex\\Res_%L.dll\0"s);
  // [-KEY] removed the whole tree and the value below it was not written.
  EXPECT_EQ(Get(HK, u"Software\\Vantex\\Obsolete", u"Ignored").first, -1);
  RegKey key = 0;
  EXPECT_EQ(store_.OpenKey(HK, u"Software\\Vantex\\Obsolete", KEY_QUERY_VALUE, key), 2);
}

// Exported, imported into an empty local store and exported again: the
// same bytes (from a server: what moving an office back gives).
TEST_P(RegFileTest, ExportImportExportIsByteIdentical) {
  constexpr auto HK = HKEY_CURRENT_USER;
  const std::u16string k = u"Software\\Round";
  Put(HK, k, u"", REG_SZ, "default");
  Put(HK, k, u"Text", REG_SZ, "Grüße \"quoted\" C:\\path");
  Put(HK, k, u"Lines", REG_SZ, "two\r\nlines");                     // needs hex(1)
  Put(HK, k, u"Outside1252", REG_SZ, "\xe2\x82\xac \xe4\xb8\xad");  // € and a CJK letter
  Put(HK, k, u"Count", REG_DWORD, "\x2a\0\0\0"s);
  Put(HK, k, u"Short", REG_DWORD, "\x01\x02"s);  // not 4 bytes
  Put(HK, k, u"Expand", REG_EXPAND_SZ, "%APPDATA%\\x");
  Put(HK, k, u"Multi", REG_MULTI_SZ, "a\0b\0\0"s);
  Put(HK, k, u"Empty", REG_BINARY, "");
  std::string big;
  for (int i = 0; i < 300; ++i) big.push_back(static_cast<char>(i * 7));
  Put(HK, k, u"Big", REG_BINARY, big);  // wrapped lines
  Put(HK, k, u"Qword", 11, "12345678");
  Put(HK, k + u"\\Child\\Grand", u"v", REG_SZ, "deep");
  Put(HK, k + u"\\äBC", u"v", REG_SZ, "umlaut key");
  Put(HK, k + u"\\abd", u"v", REG_SZ, "ordered");

  for (const RegFormat format : {RegFormat::kRegedit4, RegFormat::kVersion5}) {
    RegFile first;
    ASSERT_EQ(ExportKeys(store_, HK, k, first), 0);
    ASSERT_EQ(first.keys.size(), 5u);
    const std::string a = WriteRegFile(first, format);
    testing::TempFolder other;
    testing::ScopedEnv moved("NORVIK50_REGISTRY_DIR", other.path());
    RegParseError error;
    const auto parsed = ParseRegFile(a, error);
    ASSERT_TRUE(parsed) << error.line << ": " << error.message;
    SqliteStore fresh;
    std::u16string failed;
    ASSERT_EQ(ImportKeys(fresh, *parsed, failed), 0);
    RegFile second;
    ASSERT_EQ(ExportKeys(fresh, HK, k, second), 0);
    const std::string b = WriteRegFile(second, format);
    EXPECT_TRUE(a == b) << "format " << static_cast<int>(format) << "\n" << a << "\n---\n" << b;
  }
}

TEST_P(RegFileTest, WritesTheEditorsLayout) {
  RegFile file;
  file.keys.push_back({HKEY_CURRENT_USER,
                       u"Software\\X",
                       false,
                       {{u"", false, REG_SZ, "d\0"s},
                        {u"N", false, REG_DWORD, "\x2a\0\0\0"s},
                        {u"B", false, REG_BINARY, "\x01\xab"s},
                        {u"Gone", true, 0, ""}}});
  file.keys.push_back({HKEY_LOCAL_MACHINE, u"Old", true, {}});
  EXPECT_EQ(WriteRegFile(file, RegFormat::kRegedit4),
            "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\X]\r\n@=\"d\"\r\n"
            "\"N\"=dword:0000002a\r\n\"B\"=hex:01,ab\r\n\"Gone\"=-\r\n\r\n"
            "[-HKEY_LOCAL_MACHINE\\Old]\r\n\r\n");
  const std::string v5 = WriteRegFile(file, RegFormat::kVersion5);
  ASSERT_GE(v5.size(), 4u);
  EXPECT_EQ(v5.substr(0, 4), "\xff\xfeW\0"s);  // BOM, then UTF-16LE
}

TEST(RegFileParseTest, MalformedFilesAreRefusedWithTheLine) {
  const std::string h = "REGEDIT4\r\n";
  struct Case {
    const char* what;
    std::string text;
    std::size_t line;
  } cases[] = {
      {"empty", "", 0},
      {"no header", "[HKEY_CURRENT_USER\\X]\r\n", 1},
      {"value before any key", h + "\"a\"=\"b\"\r\n", 2},
      {"unknown root", h + "[HKEY_NOWHERE\\X]\r\n", 2},
      {"empty name in path", h + "[HKCU\\a\\\\b]\r\n", 2},
      {"key line not closed", h + "[HKCU\\X\r\n", 2},
      {"unclosed name", h + "[HKCU\\X]\r\n\"a=\"b\"\r\n", 3},
      {"unclosed text", h + "[HKCU\\X]\r\n\"a\"=\"b\r\n", 3},
      {"text then junk", h + "[HKCU\\X]\r\n\"a\"=\"b\" x\r\n", 3},
      {"no equals sign", h + "[HKCU\\X]\r\n\"a\" \"b\"\r\n", 3},
      {"dword too long", h + "[HKCU\\X]\r\n\"a\"=dword:123456789\r\n", 3},
      {"dword not hex", h + "[HKCU\\X]\r\n\"a\"=dword:12g4\r\n", 3},
      {"hex byte too long", h + "[HKCU\\X]\r\n\"a\"=hex:123\r\n", 3},
      {"hex not hex", h + "[HKCU\\X]\r\n\"a\"=hex:zz\r\n", 3},
      {"hex type not hex", h + "[HKCU\\X]\r\n\"a\"=hex(q):00\r\n", 3},
      {"hex type unclosed", h + "[HKCU\\X]\r\n\"a\"=hex(2:00\r\n", 3},
      {"unknown form", h + "[HKCU\\X]\r\n\"a\"=qword:1\r\n", 3},
      {"dangling continuation", h + "[HKCU\\X]\r\n\"a\"=hex:01,\\", 3},
  };
  for (const auto& c : cases) {
    RegParseError error;
    EXPECT_FALSE(ParseRegFile(c.text, error).has_value()) << c.what;
    EXPECT_EQ(error.line, c.line) << c.what;
    EXPECT_FALSE(error.message.empty()) << c.what;
  }
}

TEST(RegFileParseTest, LenientWhereTheEditorIs) {
  RegParseError error;
  // LF-only lines, short root names, spaces around "=" and in hex lists, a
  // trailing comma, a UTF-8 version 5 file.
  const auto f = ParseRegFile(
      "Windows Registry Editor Version 5.00\n[HKCU\\A]\n\"x\" = hex: 01, "
      "02,\n\"\xc3\xa4\"=\"\xc3\xb6\"\n",
      error);
  ASSERT_TRUE(f) << error.message;
  ASSERT_EQ(f->keys.size(), 1u);
  ASSERT_EQ(f->keys[0].values.size(), 2u);
  EXPECT_EQ(f->keys[0].values[0].data, "\x01\x02");
  EXPECT_EQ(f->keys[0].values[1].name, u"ä");
  EXPECT_EQ(f->keys[0].values[1].data, "\xc3\xb6\0"s);
  // REGEDIT4 text is Windows-1252.
  const auto g = ParseRegFile("REGEDIT4\r\n[HKCU\\A]\r\n\"e\"=\"\x80\"\r\n", error);
  ASSERT_TRUE(g);
  EXPECT_EQ(g->keys[0].values[0].data, "\xe2\x82\xac\0"s);
}

INSTANTIATE_TEST_SUITE_P(Stores, RegFileTest,
                         ::testing::Values(StoreKind::kLocal, StoreKind::kServer),
                         [](const auto& info) { return StoreKindName(info.param); });

}  // namespace
}  // namespace norvik50::settings
