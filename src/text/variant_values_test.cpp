#include "text/variant_values.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "norvik50/collection.h"
#include "norvik50/error.h"

namespace norvik50 {
namespace {

SafeArray List(int32_t lower, std::vector<Variant> items) {
  return SafeArray(lower, std::move(items));
}

TEST(GetNotNullValue, OnlyNullChanges) {
  EXPECT_TRUE(GetNotNullValue(Variant::Null()).is_empty());
  EXPECT_EQ(GetNotNullValue(Variant(u"x")).as_string(), u"x");
  EXPECT_EQ(GetNotNullValue(Variant(int16_t{0})).type(), VarType::kInteger);
  EXPECT_TRUE(GetNotNullValue(Variant(List(0, {Variant::Null()}))).is_array());
}

TEST(IsEmptyValue, ByTypeCode) {
  struct Case {
    Variant value;
    bool expected;
    const char* why;
  };
  const Case cases[] = {
      {Variant(), true, "Empty"},
      {Variant::Null(), true, "Null"},
      {Variant(int16_t{0}), true, "Integer 0"},
      {Variant(int32_t{0}), true, "Long 0"},
      {Variant(0.0f), true, "Single 0"},
      {Variant(0.0), true, "Double 0"},
      {Variant(Currency{}), true, "Currency 0"},
      {Variant(Date{0.0}), true, "the zero date"},
      {Variant(u""), true, "empty string"},
      {Variant(u" "), false, "a blank is not empty"},
      {Variant(int16_t{1}), false, "Integer 1"},
      {Variant(0.5), false, "Double 0.5"},
      {Variant(Date{1.0}), false, "a real date"},
      {Variant(false), false, "Boolean False is never empty"},
      {Variant(uint8_t{0}), false, "Byte 0 is never empty"},
      {Variant(Decimal{}), false, "Decimal 0 is never empty"},
      {Variant(ErrorValue{0}), false, "error value"},
      {Variant(List(0, {})), false, "array"},
      {Variant(std::make_shared<Collection>()), false, "object"},
  };
  for (const Case& c : cases) EXPECT_EQ(IsEmptyValue(c.value), c.expected) << c.why;
}

TEST(IsInList, Equality) {
  const Variant numbers(List(0, {Variant(int16_t{1}), Variant(2.0), Variant(int32_t{3})}));
  EXPECT_TRUE(IsInList(Variant(int16_t{2}), numbers));  // numbers by value
  EXPECT_FALSE(IsInList(Variant(int16_t{4}), numbers));
  // A number never equals a string, even a numeric one.
  EXPECT_FALSE(IsInList(Variant(int16_t{2}), Variant(List(0, {Variant(u"2")}))));
  // Strings compare exactly.
  const Variant letters(List(0, {Variant(u"A"), Variant(u"B")}));
  EXPECT_FALSE(IsInList(Variant(u"b"), letters));
  EXPECT_TRUE(IsInList(Variant(u"B"), letters));
  // Empty equals 0 and "".
  EXPECT_TRUE(IsInList(Variant(), Variant(List(0, {Variant(u"x"), Variant(0.0)}))));
  EXPECT_TRUE(IsInList(Variant(), Variant(List(0, {Variant(u"")}))));
  EXPECT_TRUE(IsInList(Variant(u""), Variant(List(0, {Variant()}))));
  // Null equals nothing, not even Null.
  EXPECT_FALSE(IsInList(Variant::Null(), Variant(List(0, {Variant::Null()}))));
  // Dates are numbers.
  EXPECT_TRUE(IsInList(Variant(2.0), Variant(List(0, {Variant(Date{2.0})}))));
}

TEST(IsInList, OnlyIndexZeroUpwards) {
  // A list based at 1 fails at its first access: False.
  EXPECT_FALSE(IsInList(Variant(int16_t{1}), Variant(List(1, {Variant(int16_t{1})}))));
  // A list based below 0 is searched from index 0 only.
  const Variant from_minus_one(List(-1, {Variant(int16_t{2}), Variant(int16_t{9})}));
  EXPECT_FALSE(IsInList(Variant(int16_t{2}), from_minus_one));
  EXPECT_TRUE(IsInList(Variant(int16_t{9}), from_minus_one));
}

TEST(IsInList, FailuresGiveFalse) {
  // An element that cannot be compared ends the search, even before a match.
  const Variant with_error(List(0, {Variant(ErrorValue{5}), Variant(int16_t{2})}));
  EXPECT_FALSE(IsInList(Variant(int16_t{2}), with_error));
  EXPECT_FALSE(IsInList(Variant(int16_t{2}), Variant(int16_t{2})));   // not an array
  EXPECT_FALSE(IsInList(Variant(int16_t{2}), Variant(SafeArray())));  // unbounded
  EXPECT_FALSE(IsInList(Variant(List(0, {})), Variant(List(0, {Variant()}))));
}

TEST(ArrayHasData, BoundsDecide) {
  EXPECT_FALSE(ArrayHasData(Variant(SafeArray())));               // never dimensioned
  EXPECT_TRUE(ArrayHasData(Variant(SafeArray::Bounded(0, -1))));  // bounds, no elements
  EXPECT_TRUE(ArrayHasData(Variant(List(1, {Variant()}))));
  EXPECT_FALSE(ArrayHasData(Variant(u"abc")));
  EXPECT_FALSE(ArrayHasData(Variant()));
}

// ---- Collection and ClearCollection ---------------------------------------

TEST(Collection, OneBasedPositions) {
  Collection c;
  for (int16_t k = 1; k <= 4; ++k) c.Add(Variant(k));
  EXPECT_EQ(c.Count(), 4);
  c.Remove(2);
  EXPECT_EQ(c.Count(), 3);
  EXPECT_EQ(c.Item(1).as_integer(), 1);
  EXPECT_EQ(c.Item(2).as_integer(), 3);
  EXPECT_EQ(c.Item(3).as_integer(), 4);
  for (int32_t bad : {0, 4, -1}) {
    EXPECT_THROW(c.Item(bad), Error) << bad;
    EXPECT_THROW(c.Remove(bad), Error) << bad;
  }
  EXPECT_EQ(c.Count(), 3);
}

TEST(ClearCollection, EmptiesAndKeepsOrDropsTheReference) {
  auto items = std::make_shared<Collection>();
  for (int16_t k = 0; k < 3; ++k) items->Add(Variant(k));
  std::shared_ptr<HostObject> ref = items;
  ClearCollection(ref, false);
  EXPECT_EQ(items->Count(), 0);
  EXPECT_EQ(ref.get(), items.get());

  items->Add(Variant(u"x"));
  ClearCollection(ref, true);
  EXPECT_EQ(items->Count(), 0);
  EXPECT_EQ(ref, nullptr);
}

TEST(ClearCollection, NoCollectionEndsQuietly) {
  std::shared_ptr<HostObject> nothing;
  ClearCollection(nothing, true);
  EXPECT_EQ(nothing, nullptr);
  // Another kind of object has no count to ask for: the member stops before
  // it would drop the reference.
  std::shared_ptr<HostObject> other = std::make_shared<HostObject>();
  ClearCollection(other, true);
  EXPECT_NE(other, nullptr);
}

}  // namespace
}  // namespace norvik50
