// The registry routines against a store that fails on purpose, over each
// real store (the local files and a settings server).
#include "settings/registry_algorithms.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/fault_store_for_tests.h"
#include "settings/pg_server_for_tests.h"
#include "settings/sqlite_store.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

constexpr int32_t HK = HKEY_CURRENT_USER;

class RegistryAlgorithmsTest : public ::testing::TestWithParam<StoreKind> {
 protected:
  void SetUp() override {
    if (GetParam() == StoreKind::kServer) {
      NORVIK50_NEED_TEST_SERVER();
      EmptyServer();
    }
  }
  // A fresh store of the kind under test.
  std::shared_ptr<RegistryStore> Real() {
    if (GetParam() == StoreKind::kServer) return ServerStore("desk");
    return std::make_shared<SqliteStore>();
  }

  testing::TempFolder dir_;
  testing::ScopedEnv env_{"NORVIK50_REGISTRY_DIR", dir_.path()};
  testing::ScopedLocale locale_{"en-US"};
  std::shared_ptr<RegistryStore> real_ = Real();
  FaultStore store_{*real_};
  std::vector<std::u16string> reports_;
  ErrorReport report_ = [this](int32_t n, std::u16string_view d, std::u16string_view s) {
    reports_.push_back(std::u16string(s) + u" " + std::u16string(d) + u" #" +
                       std::u16string(1, static_cast<char16_t>(u'0' + n % 10)));
  };
};

TEST_P(RegistryAlgorithmsTest, WriteFailuresGiveFalse) {
  struct Case {
    const char* what;
    FaultStore::Op op;
    int32_t code;
  } cases[] = {
      {"the store refuses the value", FaultStore::kSet, 5},
      {"the key can be neither opened nor created", FaultStore::kCreate, 5},
  };
  for (const auto& c : cases) {
    const auto real = Real();
    FaultStore store(*real);
    store.Fail(c.op, c.code);
    const std::u16string key = u"W" + std::u16string(1, static_cast<char16_t>(u'0' + c.op));
    EXPECT_FALSE(RegWriteValue(store, HK, key, u"v", Variant(int32_t{1}), report_)) << c.what;
    EXPECT_EQ(store.open_handles, 0) << c.what;
  }
  // Delete: a refused deletion is False too.
  ASSERT_TRUE(RegWriteValue(store_, HK, u"W", u"v", Variant(int32_t{1}), report_));
  store_.Fail(FaultStore::kDeleteValue, 5);
  EXPECT_FALSE(RegWriteValue(store_, HK, u"W", u"v", Variant(u"-"), report_));
  EXPECT_EQ(store_.calls[FaultStore::kCreate], 1);  // only the first write created the key
  EXPECT_EQ(store_.open_handles, 0);
}

TEST_P(RegistryAlgorithmsTest, ReadFallsBackOnEveryKindOfFailure) {
  ASSERT_TRUE(RegWriteValue(store_, HK, u"R", u"v", Variant(int32_t{7}), report_));
  for (const int32_t code : {2, 5, 234, 1011}) {
    const auto real = Real();
    FaultStore store(*real);
    store.Fail(FaultStore::kQuery, code);
    EXPECT_EQ(RegReadValue(store, HK, u"R", u"v", Variant(int32_t{3}), false, report_).as_long(), 3)
        << code;
    EXPECT_EQ(store.open_handles, 0);
  }
  // A failed open never reaches the query.
  store_.Fail(FaultStore::kOpen, 2);
  EXPECT_EQ(RegReadValue(store_, HK, u"R", u"v", std::nullopt, false, report_).as_string(), u"");
  EXPECT_EQ(store_.calls[FaultStore::kQuery], 0);
}

TEST_P(RegistryAlgorithmsTest, StoreProblemsAreReportedWithTheMembersSource) {
  store_.problem = u"settings database X is damaged";
  RegReadValue(store_, HK, u"P", u"v", std::nullopt, false, report_);
  store_.problem = u"settings database Y is damaged";
  RegWriteValue(store_, HK, u"P", u"v", Variant(u"x"), report_);
  ASSERT_EQ(reports_.size(), 2u);
  EXPECT_EQ(reports_[0], u"LIB:tkrGetValue() settings database X is damaged #1");
  EXPECT_EQ(reports_[1], u"LIB:tkrSetValue() settings database Y is damaged #1");
}

TEST_P(RegistryAlgorithmsTest, NonFiniteNumbersAreReportedNotStored) {
  EXPECT_FALSE(RegWriteValue(store_, HK, u"F", u"v", Variant(1.0 / 0.0), report_));
  ASSERT_EQ(reports_.size(), 1u);
  EXPECT_EQ(reports_[0].rfind(u"LIB:tkrSetValue()", 0), 0u);
}

TEST_P(RegistryAlgorithmsTest, TreeDeletionEndsEvenWhenTheStoreLies) {
  for (const auto* k : {u"D\\a", u"D\\b"}) {
    ASSERT_TRUE(RegWriteValue(store_, HK, k, u"v", Variant(int32_t{1}), report_));
  }
  // Deletions that report success but leave the key would loop for ever.
  store_.fake_deletes = true;
  EXPECT_EQ(RegDeleteKeyTree(store_, HK, u"D", true), 0);
  store_.fake_deletes = false;
  EXPECT_EQ(RegCountKeys(store_, HK, u"D"), 3);
  // A failing sub-key deletion stops the loop; the key itself is refused.
  store_.Fail(FaultStore::kDeleteKey, 5);
  EXPECT_EQ(RegDeleteKeyTree(store_, HK, u"D", true), 5);
  EXPECT_EQ(store_.open_handles, 0);
}

TEST_P(RegistryAlgorithmsTest, CountStopsAtAnUnreadableSubKey) {
  for (const auto* k : {u"C\\a\\x", u"C\\b"}) {
    ASSERT_TRUE(RegWriteValue(store_, HK, k, u"v", Variant(int32_t{1}), report_));
  }
  EXPECT_EQ(RegCountKeys(store_, HK, u"C"), 4);
  store_.Fail(FaultStore::kEnumKey, 1011);
  EXPECT_EQ(RegCountKeys(store_, HK, u"C"), 1);  // only the key itself
  EXPECT_FALSE(RegListSubKeys(store_, HK, u"Missing").is_bounded());
  EXPECT_EQ(RegListSubKeys(store_, HK, u"C").size(), 0u);
  EXPECT_EQ(store_.open_handles, 0);
}

INSTANTIATE_TEST_SUITE_P(Stores, RegistryAlgorithmsTest,
                         ::testing::Values(StoreKind::kLocal, StoreKind::kServer),
                         [](const auto& info) { return StoreKindName(info.param); });

}  // namespace
}  // namespace norvik50::settings
