#include "norvik50/variant.h"

#include <gtest/gtest.h>

#include "norvik50/error.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

TEST(VariantTest, TypeCodes) {
  struct Case {
    Variant value;
    int code;
  } cases[] = {
      {Variant(), 0},
      {Variant::Null(), 1},
      {Variant(int16_t{1}), 2},
      {Variant(1), 3},
      {Variant(1.0f), 4},
      {Variant(1.0), 5},
      {Variant(Currency{10000}), 6},
      {Variant(Date{1.0}), 7},
      {Variant(u"x"), 8},
      {Variant(std::shared_ptr<HostObject>()), 9},
      {Variant(ErrorValue{5}), 10},
      {Variant(true), 11},
      {Variant(Decimal{}), 14},
      {Variant(uint8_t{1}), 17},
      {Variant(SafeArray()), 8204},  // array of Variant
      {Variant(SafeArray(VarType::kString)), 8200},
  };
  for (const Case& c : cases) EXPECT_EQ(c.value.var_type(), c.code);
}

TEST(VariantTest, TypedAccessMismatchIsError13) {
  EXPECT_EQ(ErrorOf([] { (void)Variant(u"1").as_long(); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)Variant(int16_t{1}).as_long(); }), 13);
  EXPECT_EQ(ErrorOf([] { (void)Variant().as_array(); }), 13);
  EXPECT_EQ(Variant(true).as_boolean(), -1);
  EXPECT_EQ(Variant(false).as_boolean(), 0);
  // A Boolean keeps a non-zero value other than -1 (the folder attribute).
  EXPECT_EQ(Variant::Boolean(16).as_boolean(), 16);
}

TEST(VariantTest, CopiesArraysAndRecordsButSharesObjects) {
  Variant a(SafeArray(1, {Variant(1), Variant(u"two")}));
  Variant b = a;
  b.as_array().at(1) = Variant(99);
  EXPECT_EQ(a.as_array().at(1).as_long(), 1);  // value semantics

  Variant r(Record("typFileInfo", {{"lpDrive", Variant(u"C")}}));
  Variant r2 = r;
  *r2.as_record().find("lpDrive") = Variant(u"D");
  EXPECT_EQ(r.as_record().find("lpDrive")->as_string(), u"C");

  auto object = std::make_shared<HostObject>();
  Variant o(object);
  Variant o2 = o;
  EXPECT_EQ(o2.as_object(), object);

  Variant moved = std::move(a);
  EXPECT_TRUE(a.is_empty());  // NOLINT(bugprone-use-after-move): moved-from is Empty
  EXPECT_EQ(moved.as_array().size(), 2u);
}

TEST(VariantTest, NumericValueCoversNumbersDatesAndBooleans) {
  EXPECT_EQ(Variant(Currency{25000}).numeric_value(), 2.5);
  EXPECT_EQ(Variant(Date{3.25}).numeric_value(), 3.25);
  EXPECT_EQ(Variant(true).numeric_value(), -1.0);
  EXPECT_EQ(Variant(uint8_t{200}).numeric_value(), 200.0);
  EXPECT_FALSE(Variant(u"2").numeric_value());
  EXPECT_FALSE(Variant::Null().numeric_value());
}

TEST(SafeArrayTest, BoundsAndTheUnboundedArray) {
  SafeArray unbounded;
  EXPECT_FALSE(unbounded.is_bounded());
  EXPECT_EQ(ErrorOf([&] { (void)unbounded.ubound(); }), 9);

  // A bounded array may be empty: 0 to -1 is dimensioned, just without
  // elements, and asking for its bounds succeeds.
  SafeArray empty = SafeArray::Bounded(0, -1);
  EXPECT_EQ(empty.lbound(), 0);
  EXPECT_EQ(empty.ubound(), -1);
  EXPECT_EQ(ErrorOf([&] { (void)empty.at(0); }), 9);

  SafeArray one_based = SafeArray::Bounded(1, 3, VarType::kString);
  EXPECT_EQ(one_based.ubound(), 3);
  EXPECT_EQ(one_based.at(1).as_string(), u"");  // String arrays start as ""
  EXPECT_EQ(ErrorOf([&] { (void)one_based.at(0); }), 9);
  EXPECT_EQ(ErrorOf([&] { (void)one_based.at(4); }), 9);
  EXPECT_EQ(ErrorOf([] { (void)SafeArray::Bounded(5, 3); }), 9);
}

TEST(ErrorTest, NumbersTextsAndSource) {
  struct Case {
    int number;
    const char16_t* text;
  } cases[] = {
      {5, u"Invalid procedure call or argument"},
      {6, u"Overflow"},
      {9, u"Subscript out of range"},
      {13, u"Type mismatch"},
      {53, u"File not found"},
      {438, u"Object doesn't support this property or method"},
      {12345, u"Application-defined or object-defined error"},
  };
  for (const Case& c : cases) {
    const Error e(c.number);
    EXPECT_EQ(e.description(), c.text);
    EXPECT_EQ(e.source(), u"Norvik50");
  }
  EXPECT_EQ(ErrorOf([] { ToInt16Checked(32768); }), 6);
  EXPECT_EQ(ErrorOf([] { ToInt16Checked(-32769); }), 6);
  EXPECT_EQ(ToInt16Checked(-32768), -32768);
  EXPECT_EQ(ErrorOf([] { ToInt32Checked(2147483648LL); }), 6);
}

}  // namespace
}  // namespace norvik50
