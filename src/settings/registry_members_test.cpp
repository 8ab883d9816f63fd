// The tkr members end to end on each store (the local database files and
// a real settings server): the documented edge cases, in German and
// English number conventions.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/lib.h"
#include "settings/pg_server_for_tests.h"
#include "settings/sqlite_store.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using Args = std::vector<std::optional<Variant>>;
using namespace std::string_literals;
constexpr int32_t HK = HKEY_CURRENT_USER;
constexpr std::u16string_view kKey = u"Software\\Norvik\\Test";

using settings::StoreKind;

// Runs under each locale the stored number text depends on, on each store.
// The server is chosen as a host chooses it: by the variables naming it
// for both roots.
class RegistryMembersTest : public ::testing::TestWithParam<std::tuple<const char*, StoreKind>> {
 protected:
  void SetUp() override {
    if (server_) {
      NORVIK50_NEED_TEST_SERVER();
      settings::EmptyServer();
    }
    SetRegistryStore(nullptr);  // the store the configuration names
  }
  void TearDown() override { SetRegistryStore(nullptr); }

  testing::TempFolder temp_;
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  testing::ScopedEnv store_dir_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  bool server_ = std::get<1>(GetParam()) == StoreKind::kServer;
  std::optional<std::string> conninfo_ =
      server_ ? std::optional(settings::ServerConninfo("desk")) : std::nullopt;
  testing::ScopedEnv hklm_{"NORVIK50_STORE_HKLM", conninfo_};
  testing::ScopedEnv hkcu_{"NORVIK50_STORE_HKCU", conninfo_};
  testing::ScopedLocale locale_{std::get<0>(GetParam())};
  LIB lib_;
  bool german_ = std::string(std::get<0>(GetParam())) == "de-DE";

  // The raw type and bytes of a value, read past the members.
  std::pair<int32_t, std::string> Raw(std::u16string_view name) {
    auto store = CurrentRegistryStore();
    RegKey key = 0;
    if (store->OpenKey(HK, kKey, KEY_QUERY_VALUE, key) != 0) return {-1, ""};
    int32_t type = -1;
    std::string data;
    if (store->QueryValue(key, name, 100000, type, data) != 0) type = -1;
    store->CloseKey(key);
    return {type, data};
  }
};

INSTANTIATE_TEST_SUITE_P(LocalesAndStores, RegistryMembersTest,
                         ::testing::Combine(::testing::Values("en-US", "de-DE"),
                                            ::testing::Values(StoreKind::kLocal,
                                                              StoreKind::kServer)),
                         [](const auto& info) {
                           std::string locale = std::get<0>(info.param);
                           locale.erase(locale.find('-'), 1);
                           return locale + settings::StoreKindName(std::get<1>(info.param));
                         });

TEST_P(RegistryMembersTest, AutoCreateWritesTheDefaultOnlyWhenAsked) {
  // Missing, default 5, no auto-create: 5 and nothing stored.
  EXPECT_EQ(lib_.tkrGetLong(HK, kKey, u"Count", 5, false), 5);
  EXPECT_EQ(Raw(u"Count").first, -1);
  // With auto-create a REG_DWORD 5 is left behind.
  EXPECT_EQ(lib_.tkrGetLong(HK, kKey, u"Count", 5, true), 5);
  EXPECT_EQ(Raw(u"Count"), std::make_pair(int32_t{REG_DWORD}, std::string("\x05\0\0\0", 4)));
  // A default "" with auto-create stores the empty text: one zero byte.
  EXPECT_EQ(lib_.tkrGetString(HK, kKey, u"Name", u"", true), u"");
  EXPECT_EQ(Raw(u"Name"), std::make_pair(int32_t{REG_SZ}, std::string("\0", 1)));
  // tkrGetValue without a default: "" and nothing written, even with auto-create.
  EXPECT_EQ(lib_.tkrGetValue(HK, kKey, u"Nothing", std::nullopt, true).as_string(), u"");
  EXPECT_EQ(Raw(u"Nothing").first, -1);
}

TEST_P(RegistryMembersTest, FractionalNumbersAreStoredAsLocaleText) {
  // 2.5 becomes "2.50" / "2,50"; the Long reading rounds half to even.
  ASSERT_TRUE(lib_.tkrSetValue(HK, kKey, u"Ratio", Variant(2.5)));
  const std::u16string expected = german_ ? u"2,50" : u"2.50";
  EXPECT_EQ(lib_.tkrGetValue(HK, kKey, u"Ratio").as_string(), expected);
  EXPECT_EQ(lib_.tkrGetLong(HK, kKey, u"Ratio"), 2);
  struct Case {
    Variant value;
    std::u16string english, german;
  } cases[] = {
      {Variant(1234.5), u"1,234.50", u"1.234,50"},               // thousands separators
      {Variant(0.125f), u"0.13", u"0,13"},                       // Single, half away from zero
      {Variant(Currency::FromScaled(-35)), u"-0.00", u"-0,00"},  // Currency -0.0035
      {Variant(-2.345), u"-2.35", u"-2,35"},
  };
  for (const auto& c : cases) {
    ASSERT_TRUE(lib_.tkrSetValue(HK, kKey, u"N", c.value));
    EXPECT_EQ(lib_.tkrGetString(HK, kKey, u"N"), german_ ? c.german : c.english);
  }
}

TEST_P(RegistryMembersTest, ValueTypesWrittenBySetValue) {
  struct Case {
    const char* what;
    Variant value;
    int32_t type;
    std::string bytes;
  } cases[] = {
      {"Integer -1", Variant(int16_t{-1}), REG_DWORD, std::string("\xff\xff\xff\xff", 4)},
      {"Long", Variant(int32_t{0x01020304}), REG_DWORD, std::string("\x04\x03\x02\x01", 4)},
      {"Byte", Variant(uint8_t{200}), REG_DWORD, std::string("\xc8\0\0\0", 4)},
      {"String", Variant(u"Grüße"), REG_SZ,
       std::string("Gr\xc3\xbc\xc3\x9f"
                   "e\0",
                   8)},
      {"empty String", Variant(u""), REG_SZ, std::string("\0", 1)},
      {"True is not kept", Variant(true), REG_SZ, std::string("\0", 1)},
      {"Date is not kept", Variant(Date{45000.5}), REG_SZ, std::string("\0", 1)},
      {"Null", Variant::Null(), REG_SZ, std::string("\0", 1)},
      {"Empty", Variant(), REG_SZ, std::string("\0", 1)},
      {"hex: bytes", Variant(u"hex:01,ff,10"), REG_BINARY, std::string("\x01\xff\x10", 3)},
      {"hex: nothing", Variant(u"hex:"), REG_BINARY, ""},
      {"HEX: is plain text", Variant(u"HEX:01"), REG_SZ, std::string("HEX:01\0", 7)},
  };
  for (const auto& c : cases) {
    ASSERT_TRUE(lib_.tkrSetValue(HK, kKey, u"V", c.value)) << c.what;
    EXPECT_EQ(Raw(u"V"), std::make_pair(c.type, c.bytes)) << c.what;
  }
  // A part that is not a byte makes the write fail, logged, and keeps the old value.
  EXPECT_FALSE(lib_.tkrSetValue(HK, kKey, u"V", Variant(u"hex:01,100")));
  EXPECT_EQ(Raw(u"V").second, std::string("HEX:01\0", 7));
  EXPECT_NE(temp_.Read("nvk50err.LOG").find("Source=LIB:tkrSetValue()"), std::string::npos);
}

TEST_P(RegistryMembersTest, ReadingEachStoredType) {
  auto store = CurrentRegistryStore();
  RegKey key = 0;
  ASSERT_EQ(store->CreateKey(HK, kKey, 0, 63, key, nullptr), 0);
  struct Case {
    const char* name;
    int32_t type;
    std::string bytes;
    Variant expected;
  } cases[] = {
      {"sz", REG_SZ, "text", Variant(u"text")},
      {"expand", REG_EXPAND_SZ, "%PATH%", Variant(u"%PATH%")},  // never expanded
      {"dword", REG_DWORD, std::string("\x2a\0\0\0", 4), Variant(int32_t{42})},
      // Big-endian DWORDs are read little-endian like the others.
      {"big", REG_DWORD_BIG_ENDIAN, std::string("\0\0\0\x2a", 4), Variant(int32_t{0x2a000000})},
      {"negative", REG_DWORD, std::string("\xfe\xff\xff\xff", 4), Variant(int32_t{-2})},
      {"binary", REG_BINARY, std::string("\x41\x80\0\xff", 4), Variant(u"A\u20ac\0\u00ff"s)},
      {"multi", REG_MULTI_SZ, std::string("a\0b\0\0", 5), Variant(u"")},  // not readable
      {"none", REG_NONE, "xyz", Variant(u"")},
  };
  for (const auto& c : cases) {
    ASSERT_EQ(store->SetValue(key, FromUtf8(c.name), c.type, c.bytes), 0);
    const Variant v = lib_.tkrGetValue(HK, kKey, FromUtf8(c.name), Variant(u"default"));
    ASSERT_EQ(v.type(), c.expected.type()) << c.name;
    if (v.is_string())
      EXPECT_EQ(v.as_string(), c.expected.as_string()) << c.name;
    else
      EXPECT_EQ(v.as_long(), c.expected.as_long()) << c.name;
  }
  store->CloseKey(key);
  // Typed getters convert: DWORD to text, text that is no number to 0.
  EXPECT_EQ(lib_.tkrGetString(HK, kKey, u"dword"), u"42");
  EXPECT_EQ(lib_.tkrGetLong(HK, kKey, u"sz", 7), 0);
  EXPECT_EQ(lib_.tkrGetInteger(HK, kKey, u"big"), 0);  // does not fit 16 bits
  EXPECT_EQ(lib_.tkrGetInteger(HK, kKey, u"negative"), -2);
}

TEST_P(RegistryMembersTest, TooLongValuesCountAsMissing) {
  ASSERT_TRUE(lib_.tkrSetValue(HK, kKey, u"Long", Variant(std::u16string(2000, u'x'))));
  EXPECT_EQ(lib_.tkrGetString(HK, kKey, u"Long", u"short"), u"short");
  EXPECT_EQ(Raw(u"Long").second.size(), 2001u);  // still there without auto-create
  EXPECT_EQ(lib_.tkrGetString(HK, kKey, u"Long", u"short", true), u"short");
  EXPECT_EQ(Raw(u"Long").second, std::string("short\0", 6));  // overwritten by the default
  // 1023 characters fit the 1024-byte buffer with their terminator; 1024 do not.
  ASSERT_TRUE(lib_.tkrSetValue(HK, kKey, u"Edge", Variant(std::u16string(1023, u'ä'))));
  EXPECT_EQ(lib_.tkrGetString(HK, kKey, u"Edge").size(), 1023u);
  ASSERT_TRUE(lib_.tkrSetValue(HK, kKey, u"Edge", Variant(std::u16string(1024, u'a'))));
  EXPECT_EQ(lib_.tkrGetString(HK, kKey, u"Edge", u"-"), u"-");
}

TEST_P(RegistryMembersTest, DashDeletes) {
  ASSERT_TRUE(lib_.tkrSetValue(HK, kKey, u"Gone", Variant(int32_t{1})));
  EXPECT_TRUE(lib_.tkrSetValue(HK, kKey, u"gone", Variant(u"-")));
  EXPECT_EQ(Raw(u"Gone").first, -1);
  // Deleting again fails; on a missing key it fails without creating the key.
  EXPECT_FALSE(lib_.tkrSetValue(HK, kKey, u"Gone", Variant(u"-")));
  EXPECT_FALSE(lib_.tkrSetValue(HK, u"Software\\Nowhere", u"x", Variant(u"-")));
  EXPECT_EQ(lib_.tkrSubKeyCount(HK, u"Software\\Nowhere"), 0);
}

TEST_P(RegistryMembersTest, CountListAndDeleteTrees) {
  for (const auto* k : {u"T\\b", u"T\\A", u"T\\c\\x", u"T\\c\\y"}) {
    ASSERT_TRUE(lib_.tkrSetValue(HK, k, u"v", Variant(int32_t{1})));
  }
  // The whole subtree plus the key itself: T, A, b, c, x, y.
  EXPECT_EQ(lib_.tkrSubKeyCount(HK, u"T"), 6);
  EXPECT_EQ(lib_.tkrSubKeyCount(HK, u"t\\C"), 3);  // a key with two leaf sub-keys
  EXPECT_EQ(lib_.tkrSubKeyCount(HK, u"T\\A"), 1);
  SafeArray keys;
  lib_.tkrFindRegKeys(HK, u"T", keys);
  ASSERT_EQ(keys.lbound(), 0);
  ASSERT_EQ(keys.size(), 3u);
  EXPECT_EQ(keys.at(0).as_string(), u"A");
  EXPECT_EQ(keys.at(1).as_string(), u"b");
  EXPECT_EQ(keys.at(2).as_string(), u"c");
  lib_.tkrFindRegKeys(HK, u"T\\A", keys);
  EXPECT_TRUE(keys.is_bounded());
  EXPECT_EQ(keys.size(), 0u);  // a leaf: bounded, no elements
  lib_.tkrFindRegKeys(HK, u"T\\missing", keys);
  EXPECT_FALSE(keys.is_bounded());                     // erased
  EXPECT_EQ(lib_.tkrDeleteKey(HK, u"T\\c"), 5);        // has sub-keys
  EXPECT_EQ(lib_.tkrDeleteKey(HK, u"T\\c", true), 0);  // with them
  EXPECT_EQ(lib_.tkrDeleteKey(HK, u"T\\c", true), 2);  // already gone
  EXPECT_EQ(lib_.tkrSubKeyCount(HK, u"T"), 3);
  EXPECT_EQ(lib_.tkrDeleteKey(HK, u"T", true), 0);
  EXPECT_EQ(lib_.tkrSubKeyCount(HK, u"T"), 0);
}

TEST_P(RegistryMembersTest, PipeInAKeyNameSplitsTheList) {
  ASSERT_TRUE(lib_.tkrSetValue(HK, u"P\\a|b", u"v", Variant(int32_t{1})));
  SafeArray keys;
  lib_.tkrFindRegKeys(HK, u"P", keys);
  ASSERT_EQ(keys.size(), 2u);  // the list is joined and split at "|"
  EXPECT_EQ(keys.at(1).as_string(), u"b");
}

TEST_P(RegistryMembersTest, ThroughTheDispatch) {
  auto r =
      Invoke(lib_, "tkrGetLong",
             Args{Variant(HK), Variant(kKey), Variant(u"D"), Variant(int32_t{9}), Variant(true)});
  EXPECT_EQ(r.result->as_long(), 9);
  r = Invoke(lib_, "tkrGetValue", Args{Variant(HK), Variant(kKey), Variant(u"D")});
  EXPECT_EQ(r.result->as_long(), 9);
  r = Invoke(lib_, "tkrGetValue", Args{Variant(HK), Variant(kKey), Variant(u"X")});
  EXPECT_EQ(r.result->as_string(), u"");  // omitted default: nothing written
  EXPECT_EQ(Raw(u"X").first, -1);
  r = Invoke(lib_, "tkrSetValue", Args{Variant(HK), Variant(kKey), Variant(u"S"), Variant(1.5)});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  r = Invoke(lib_, "tkrFindRegKeys",
             Args{Variant(HK), Variant(u"Software\\Norvik"), Variant(SafeArray())});
  ASSERT_EQ(r.by_ref.count(2), 1u);
  EXPECT_EQ(r.by_ref.at(2).as_array().at(0).as_string(), u"Test");
  r = Invoke(lib_, "tkrSubKeyCount", Args{Variant(HK), Variant(u"Software")});
  EXPECT_EQ(r.result->as_long(), 3);
  r = Invoke(lib_, "tkrDeleteKey", Args{Variant(HK), Variant(u"Software")});
  EXPECT_EQ(r.result->as_long(), 5);
  for (const char* m : {"tkrGetInteger", "tkrGetString"}) EXPECT_TRUE(Members().Has(m));
}

TEST_P(RegistryMembersTest, ADamagedStoreIsLoggedAndGettersStillAnswer) {
  if (server_) GTEST_SKIP() << "a damaged database file belongs to the local store";
  std::filesystem::create_directories(temp_.File("reg"));
  {
    std::ofstream f(temp_.File("reg/HKEY_LOCAL_MACHINE.db"), std::ios::binary);
    f << "this is not a database";
  }
  SetRegistryStore(std::make_shared<settings::SqliteStore>());  // nothing cached from before
  EXPECT_EQ(lib_.tkrGetLong(HKEY_LOCAL_MACHINE, u"X", u"v", 3, true), 3);
  EXPECT_FALSE(lib_.tkrSetValue(HKEY_LOCAL_MACHINE, u"X", u"v", Variant(int32_t{1})));
  const std::string log = temp_.Read("nvk50err.LOG");
  EXPECT_NE(log.find("ERR=1011"), std::string::npos) << log;
  EXPECT_NE(log.find("HKEY_LOCAL_MACHINE.db is not a SQLite database; left untouched"),
            std::string::npos)
      << log;
  EXPECT_NE(log.find("(Source=LIB:tkrGetValue())"), std::string::npos) << log;
  EXPECT_TRUE(temp_.Read("reg/HKEY_LOCAL_MACHINE.db") == "this is not a database");
  SetRegistryStore(nullptr);
}

}  // namespace
}  // namespace norvik50
