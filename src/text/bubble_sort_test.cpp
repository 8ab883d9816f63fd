#include "text/bubble_sort.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "norvik50/error.h"
#include "norvik50/locale.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"
#include "text/collation.h"

namespace norvik50 {
namespace {

using std::u16string;

SafeArray Strings(int32_t lower, const std::vector<u16string>& items) {
  std::vector<Variant> values;
  for (const u16string& s : items) values.emplace_back(s);
  return SafeArray(lower, std::move(values), VarType::kString);
}

std::vector<u16string> Texts(const SafeArray& a) {
  std::vector<u16string> out;
  for (const Variant& v : a.items()) out.push_back(v.is_empty() ? u"<empty>" : v.as_string());
  return out;
}

using norvik50::testing::ErrorOf;

class BubbleSortTest : public ::testing::Test {
 protected:
  norvik50::testing::ScopedLocale locale_{"en-US"};
};

TEST_F(BubbleSortTest, CaseInsensitiveAndStable) {
  SafeArray a = Strings(0, {u"b", u"B", u"a"});
  BubbleSort(a);
  EXPECT_EQ(Texts(a), (std::vector<u16string>{u"a", u"b", u"B"}));
  // Equal under case: the input order stays, in both directions.
  SafeArray b = Strings(0, {u"ABC", u"b", u"abc", u"Abc", u"a"});
  BubbleSort(b);
  EXPECT_EQ(Texts(b), (std::vector<u16string>{u"a", u"ABC", u"abc", u"Abc", u"b"}));
}

TEST_F(BubbleSortTest, LocaleOrderNotCodeOrder) {
  // In code order «Z» (0x5A) precedes «a» and «ä» follows «z».
  SafeArray a = Strings(1, {u"z", u"\u00E4", u"Z", u"a", u"b"});
  BubbleSort(a);
  EXPECT_EQ(Texts(a), (std::vector<u16string>{u"a", u"\u00E4", u"b", u"z", u"Z"}));
  EXPECT_EQ(a.lbound(), 1);  // bounds are kept
  // Accents still count: «a» and «ä» are not equal.
  EXPECT_LT(CompareIgnoringCase(u"a", u"\u00E4"), 0);
  EXPECT_EQ(CompareIgnoringCase(u"\u00C4", u"\u00E4"), 0);
}

TEST_F(BubbleSortTest, EmptyElementsAndArrays) {
  SafeArray a(0, {Variant(u"b"), Variant(), Variant(u"a")}, VarType::kString);
  BubbleSort(a);
  EXPECT_EQ(Texts(a), (std::vector<u16string>{u"<empty>", u"a", u"b"}));
  SafeArray none = SafeArray::Bounded(0, -1, VarType::kString);
  BubbleSort(none);
  EXPECT_EQ(none.size(), 0u);
}

TEST_F(BubbleSortTest, Errors) {
  SafeArray unbounded(VarType::kString);
  EXPECT_EQ(ErrorOf([&] { BubbleSort(unbounded); }), kErrSubscript);
  SafeArray high = Strings(32767, {u"b", u"a"});  // upper bound 32768
  EXPECT_EQ(ErrorOf([&] { BubbleSort(high); }), kErrOverflow);
  SafeArray low = Strings(-40000, {u"b", u"a"});
  EXPECT_EQ(ErrorOf([&] { BubbleSort(low); }), kErrOverflow);
  SafeArray mixed(0, {Variant(u"b"), Variant(int16_t{1}), Variant(u"a")});
  EXPECT_EQ(ErrorOf([&] { BubbleSort(mixed); }), kErrTypeMismatch);
  EXPECT_EQ(mixed.items()[0].as_string(), u"b");  // unchanged on failure
  EXPECT_EQ(Texts(high), (std::vector<u16string>{u"b", u"a"}));
}

}  // namespace
}  // namespace norvik50
