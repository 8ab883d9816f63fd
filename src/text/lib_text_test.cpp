// The text members end to end: through the LIB object and by name through
// the dispatch, with defaults, by-reference write-back and errors.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "norvik50/collection.h"
#include "norvik50/dispatch.h"
#include "norvik50/lib.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using norvik50::testing::ErrorOf;
using std::u16string;
using Args = std::vector<std::optional<Variant>>;

class TextMembersTest : public ::testing::Test {
 protected:
  norvik50::testing::TempFolder temp_;
  norvik50::testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  norvik50::testing::ScopedLocale locale_{"en-US"};
  LIB lib_;
};

TEST_F(TextMembersTest, EveryMemberIsInTheTable) {
  for (const char* name :
       {"tklFindSubString", "tklHasSubString", "tklFindLastSubString", "tklCountSubString",
        "tklCountSubStringExt", "tklIsInSigns", "tklReplaceInString", "tklGetSubString",
        "tklSeparateString", "tklMid", "tklGetNotNullValue", "tklIsEmpty", "tklIsInList",
        "tklArrayHasData", "tklClearCollection", "tklBubbleSort", "tklExtractBrackets"}) {
    EXPECT_TRUE(Members().Has(name)) << name;
  }
  EXPECT_NE(Members().Find("tklMid", MemberKind::kPropertyGet), nullptr);
  EXPECT_NE(Members().Find("tklMid", MemberKind::kPropertyLet), nullptr);
}

TEST_F(TextMembersTest, FindWritesFoundOnlyOnAMatch) {
  InvokeResult r = Invoke(lib_, "tklFindSubString", Args{Variant(u"xab"), Variant(u"b|a")});
  EXPECT_EQ(r.result->as_integer(), 2);
  ASSERT_EQ(r.by_ref.count(6), 1u);
  EXPECT_EQ(r.by_ref.at(6).as_string(), u"a");
  // bFindFirst False, passed as the fifth argument.
  r = Invoke(lib_, "tklFindSubString",
             Args{Variant(u"xab"), Variant(u"b|a"), std::nullopt, std::nullopt, Variant(false)});
  EXPECT_EQ(r.result->as_integer(), 3);
  EXPECT_EQ(r.by_ref.at(6).as_string(), u"b");
  r = Invoke(lib_, "tklFindSubString", Args{Variant(u"xab"), Variant(u"q")});
  EXPECT_EQ(r.result->as_integer(), 0);
  EXPECT_TRUE(r.by_ref.empty());
}

TEST_F(TextMembersTest, ErrorStylesReachTheCaller) {
  // Handler style: a start below 1 is 0, not an error.
  EXPECT_EQ(lib_.tklFindSubString(u"abc", u"a", 0), 0);
  EXPECT_EQ(lib_.tklHasSubString(u"abc", u"a", 0), 0);
  // Style none: the error comes through, by name as well.
  EXPECT_EQ(ErrorOf([&] { lib_.tklFindLastSubString(u"abc", u"a", 0); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] {
              Invoke(lib_, "tklCountSubString", Args{Variant(u"abc"), Variant(u"a||b")});
            }),
            kErrOverflow);
  EXPECT_EQ(ErrorOf([&] {
              Invoke(lib_, "tklMid", Args{Variant(u"abc"), Variant(0)});
            }),
            kErrInvalidCall);
  // A start that does not fit an Integer fails while the argument is coerced.
  EXPECT_EQ(ErrorOf([&] {
              Invoke(lib_, "tklCountSubString",
                     Args{Variant(u"abc"), Variant(u"a"), Variant(int32_t{40000})});
            }),
            kErrOverflow);
}

TEST_F(TextMembersTest, ReplaceAndCountByName) {
  InvokeResult r = Invoke(
      lib_, "tklReplaceInString",
      Args{Variant(u"Abc abc"), Variant(u"ABC"), Variant(u"x"), std::nullopt, Variant(false)});
  EXPECT_EQ(r.result->as_string(), u"x x");
  EXPECT_TRUE(r.by_ref.empty());
  r = Invoke(lib_, "tklCountSubStringExt",
             Args{Variant(u"a 'a' a"), Variant(u"a"), std::nullopt, std::nullopt, Variant(u"''")});
  EXPECT_EQ(r.result->as_integer(), 2);
  r = Invoke(lib_, "tklIsInSigns",
             Args{Variant(u"x(y)z"), Variant(u"()"), Variant(int16_t{3}), Variant(int16_t{1})});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  r = Invoke(lib_, "tklGetSubString", Args{Variant(u"key = value;"), Variant(u"="), Variant(u";")});
  EXPECT_EQ(r.result->as_string(), u"value");
}

TEST_F(TextMembersTest, SeparateStringWritesItsOutputsWhenItSplits) {
  InvokeResult r =
      Invoke(lib_, "tklSeparateString",
             Args{Variant(u"a+b-c"), Variant(u"-|+"), Variant(u""), Variant(u""), Variant(u"")});
  EXPECT_FALSE(r.result.has_value());
  EXPECT_EQ(r.by_ref.at(2).as_string(), u"a+b");
  EXPECT_EQ(r.by_ref.at(3).as_string(), u"-");
  EXPECT_EQ(r.by_ref.at(4).as_string(), u"c");
  r = Invoke(lib_, "tklSeparateString",
             Args{Variant(u"abc"), Variant(u"-"), Variant(u"1"), Variant(u"2"), Variant(u"3")});
  EXPECT_TRUE(r.by_ref.empty());
}

TEST_F(TextMembersTest, MidGetAndLet) {
  InvokeResult r = Invoke(lib_, "tklMid", Args{Variant(u"abcdef"), Variant(int32_t{3})});
  EXPECT_EQ(r.result->as_string(), u"cdef");
  r = Invoke(lib_, "tklMid",
             Args{Variant(u"abcdef"), Variant(int32_t{3}), Variant(int32_t{1}), Variant(u"XY")},
             true);
  EXPECT_EQ(r.by_ref.at(0).as_string(), u"abXYdef");
  u16string s = u"abcdef";
  lib_.tklMid(s, 3, -1, u"XY");
  EXPECT_EQ(s, u"abXYef");
}

TEST_F(TextMembersTest, ValuesListsAndArraysByName) {
  EXPECT_TRUE(Invoke(lib_, "tklGetNotNullValue", Args{Variant::Null()}).result->is_empty());
  EXPECT_EQ(Invoke(lib_, "tklIsEmpty", Args{Variant(0.0)}).result->as_boolean(), kTrue);
  EXPECT_EQ(Invoke(lib_, "tklIsEmpty", Args{Variant(u" ")}).result->as_boolean(), kFalse);
  const Variant list(SafeArray(0, {Variant(int16_t{1}), Variant(2.0)}));
  EXPECT_EQ(Invoke(lib_, "tklIsInList", Args{Variant(int32_t{2}), list}).result->as_boolean(),
            kTrue);
  EXPECT_EQ(Invoke(lib_, "tklArrayHasData", Args{Variant(SafeArray::Bounded(0, -1))})
                .result->as_boolean(),
            kTrue);
  EXPECT_EQ(Invoke(lib_, "tklArrayHasData", Args{Variant(SafeArray())}).result->as_boolean(),
            kFalse);
}

TEST_F(TextMembersTest, BubbleSortWritesTheArrayBack) {
  const Variant list(SafeArray(1, {Variant(u"b"), Variant(u"B"), Variant(u"a")}));
  const InvokeResult r = Invoke(lib_, "tklBubbleSort", Args{list});
  const SafeArray& sorted = r.by_ref.at(0).as_array();
  EXPECT_EQ(sorted.lbound(), 1);
  EXPECT_EQ(sorted.at(1).as_string(), u"a");
  EXPECT_EQ(sorted.at(2).as_string(), u"b");
  EXPECT_EQ(sorted.at(3).as_string(), u"B");
}

TEST_F(TextMembersTest, ClearCollectionByName) {
  auto items = std::make_shared<Collection>();
  items->Add(Variant(u"x"));
  items->Add(Variant(u"y"));
  InvokeResult r = Invoke(lib_, "tklClearCollection", Args{Variant(items)});
  EXPECT_EQ(items->Count(), 0);
  // The caller keeps its reference: the same, now empty, collection comes back.
  ASSERT_EQ(r.by_ref.count(0), 1u);
  EXPECT_EQ(r.by_ref.at(0).as_object(), items);
  items->Add(Variant(u"z"));
  r = Invoke(lib_, "tklClearCollection", Args{Variant(items), Variant(true)});
  EXPECT_EQ(items->Count(), 0);
  ASSERT_EQ(r.by_ref.count(0), 1u);
  EXPECT_EQ(r.by_ref.at(0).as_object(), nullptr);
}

TEST_F(TextMembersTest, ExtractBracketsByName) {
  const InvokeResult r =
      Invoke(lib_, "tklExtractBrackets",
             Args{Variant(u"format(x, \"0,00\") y"), Variant(u""), Variant(u""), Variant(u"")});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(r.by_ref.at(1).as_string(), u"x, \"0,00\"");
  EXPECT_EQ(r.by_ref.at(2).as_string(), u"format");
  EXPECT_EQ(r.by_ref.at(3).as_string(), u" y");
}

// The members designed here, each once by name: defaults, write-back only
// on success, and the mark in the table.
TEST_F(TextMembersTest, DesignedHereMembersByName) {
  for (const char* name : {"tklReplaceInStringExt", "tklExtractExpression",
                           "tklPhraseWithoutBrackets", "tklSeparateFunction", "tklIsNumericWord"}) {
    const MemberInfo* member = Members().Find(name, MemberKind::kMethod);
    ASSERT_NE(member, nullptr) << name;
    EXPECT_TRUE(member->designed_here) << name;
  }

  // Defaults: no pairs protect, so the quoted match is replaced too.
  InvokeResult r = Invoke(lib_, "tklReplaceInStringExt",
                          Args{Variant(u"a \"a\" (a)"), Variant(u"A"), Variant(u"x")});
  EXPECT_EQ(r.result->as_string(), u"x \"x\" (x)");
  r = Invoke(
      lib_, "tklReplaceInStringExt",
      Args{Variant(u"a1 1,500 (a)"), Variant(u"a|1"), Variant(u"x"), std::nullopt, std::nullopt,
           std::nullopt, std::nullopt, Variant(true), std::nullopt, Variant(u"()")});
  EXPECT_EQ(r.result->as_string(), u"xx 1,500 (a)");

  r = Invoke(lib_, "tklExtractExpression",
             Args{Variant(u"y = round(a, 2) + 1"), Variant(u""), Variant(u""), Variant(u""),
                  Variant(u"Round")});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(r.by_ref.at(1).as_string(), u"round(a, 2)");
  EXPECT_EQ(r.by_ref.at(2).as_string(), u"y = ");
  EXPECT_EQ(r.by_ref.at(3).as_string(), u" + 1");
  EXPECT_EQ(r.by_ref.at(4).as_string(), u"round");
  r = Invoke(lib_, "tklExtractExpression",
             Args{Variant(u"none"), Variant(u"E"), Variant(u"B"), Variant(u"A")});
  EXPECT_EQ(r.result->as_boolean(), kFalse);
  EXPECT_TRUE(r.by_ref.empty());

  r = Invoke(lib_, "tklPhraseWithoutBrackets", Args{Variant(u"Total (net) EUR")});
  EXPECT_EQ(r.result->as_string(), u"Total EUR");

  r = Invoke(lib_, "tklSeparateFunction",
             Args{Variant(u"Format(x, \"a,b\")"), Variant(u""), Variant()});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(r.by_ref.at(1).as_string(), u"Format");
  const SafeArray args = r.by_ref.at(2).as_array();
  EXPECT_EQ(args.lbound(), 0);
  ASSERT_EQ(args.size(), 2u);
  EXPECT_EQ(args.at(1).as_string(), u"\"a,b\"");
  r = Invoke(lib_, "tklSeparateFunction", Args{Variant(u"a + b"), Variant(u""), Variant()});
  EXPECT_EQ(r.result->as_boolean(), kFalse);
  EXPECT_TRUE(r.by_ref.empty());

  // The current locale decides (en-US here).
  EXPECT_EQ(Invoke(lib_, "tklIsNumericWord", Args{Variant(u"1,234.5")}).result->as_boolean(),
            kTrue);
  EXPECT_EQ(Invoke(lib_, "tklIsNumericWord", Args{Variant(u"1.234,5")}).result->as_boolean(),
            kFalse);
}

}  // namespace
}  // namespace norvik50
