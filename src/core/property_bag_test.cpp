// The property bag: values by name on one LIB object, names compared as
// registry value names are.
#include "core/property_bag.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/invoke.h"
#include "core/member_registry.h"
#include "norvik50/collection.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

TEST(PropertyBagTest, NamesFoldAsRegistryNamesDo) {
  // Each row: a name written, another name read, whether they are one
  // property.
  struct Case {
    const char16_t* written;
    const char16_t* read;
    bool same;
  } cases[] = {
      {u"Connection", u"CONNECTION", true},
      {u"Connection", u"connection", true},
      {u"\u00C4nderung", u"\u00E4NDERUNG", true},  // Änderung / äNDERUNG
      {u"\u0160ablona", u"\u0161ABLONA", true},    // Czech Š / š
      {u"Stra\u00DFe", u"STRASSE", false},         // ß stays one letter
      {u"I", u"\u0131", false},                    // no Turkic dotless i
      {u"User Name", u"UserName", false},          // blanks count
      {u"Name ", u"Name", false},                  // and are not trimmed
  };
  for (const Case& c : cases) {
    PropertyBag bag;
    bag.Let(c.written, Variant(int32_t{42}));
    const Variant got = bag.Get(c.read);
    EXPECT_EQ(!got.is_empty(), c.same) << ToUtf8(c.written) << " / " << ToUtf8(c.read);
  }
}

TEST(PropertyBagTest, KeepsEveryKindOfValue) {
  const auto collection = std::make_shared<Collection>();
  const Variant values[] = {
      Variant::Null(),  // Null is a value, not a forgotten name
      Variant(int16_t{-1}),
      Variant(3.25),
      Variant(u""),  // the empty text too
      Variant(u"Provider=SQLOLEDB;Data Source=srv"),
      Variant(false),
      Variant(ErrorValue{2042}),
      Variant(std::shared_ptr<HostObject>()),  // Nothing
      Variant(std::static_pointer_cast<HostObject>(collection)),
      Variant(SafeArray(1, {Variant(u"a"), Variant(int32_t{2})})),
  };
  PropertyBag bag;
  int n = 0;
  for (const Variant& v : values) bag.Let(u"p" + FromUtf8(std::to_string(n++)), v);
  EXPECT_EQ(bag.size(), std::size(values));
  n = 0;
  for (const Variant& v : values) {
    const Variant got = bag.Get(u"P" + FromUtf8(std::to_string(n++)));
    EXPECT_EQ(got.type(), v.type()) << n;
  }
  EXPECT_EQ(bag.Get(u"p4").as_string(), u"Provider=SQLOLEDB;Data Source=srv");
  EXPECT_EQ(bag.Get(u"p6").as_error().code, 2042);
  EXPECT_EQ(bag.Get(u"p9").as_array().lbound(), 1);
  EXPECT_EQ(bag.Get(u"p9").as_array().at(2).as_long(), 2);
}

TEST(PropertyBagTest, ObjectsByReferenceArraysByValue) {
  PropertyBag bag;
  const auto collection = std::make_shared<Collection>();
  bag.Let(u"Items", Variant(std::static_pointer_cast<HostObject>(collection)));
  // The host's later changes to the object are seen through the bag.
  collection->Add(Variant(u"later"));
  const auto kept = std::dynamic_pointer_cast<Collection>(bag.Get(u"items").as_object());
  ASSERT_EQ(kept, collection);
  EXPECT_EQ(kept->Count(), 1);

  // An array is a copy: changing the host's array leaves the kept one.
  Variant array(SafeArray(0, {Variant(u"before")}));
  bag.Let(u"List", array);
  array.as_array().at(0) = Variant(u"after");
  EXPECT_EQ(bag.Get(u"LIST").as_array().at(0).as_string(), u"before");
}

TEST(PropertyBagTest, ReplacingAndForgetting) {
  PropertyBag bag;
  // Unknown names read Empty.
  EXPECT_TRUE(bag.Get(u"Nowhere").is_empty());
  bag.Let(u"Mode", Variant(int16_t{1}));
  bag.Let(u"MODE", Variant(u"two"));  // the same property, another case
  EXPECT_EQ(bag.size(), 1u);
  EXPECT_EQ(bag.Get(u"mode").as_string(), u"two");
  // Empty forgets the name; forgetting an unknown name is harmless.
  bag.Let(u"Mode", Variant());
  bag.Let(u"Other", Variant());
  EXPECT_EQ(bag.size(), 0u);
  EXPECT_TRUE(bag.Get(u"Mode").is_empty());
  // Forgetting releases the object the bag held.
  auto collection = std::make_shared<Collection>();
  bag.Let(u"c", Variant(std::static_pointer_cast<HostObject>(collection)));
  EXPECT_EQ(collection.use_count(), 2);
  bag.Let(u"C", Variant());
  EXPECT_EQ(collection.use_count(), 1);
}

TEST(PropertyBagTest, AnEmptyNameIsRefused) {
  PropertyBag bag;
  EXPECT_EQ(ErrorOf([&] { bag.Get(u""); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { bag.Let(u"", Variant(int32_t{1})); }), kErrInvalidCall);
  EXPECT_EQ(bag.size(), 0u);
}

TEST(PropertyBagTest, EachLibObjectHasItsOwn) {
  LIB first;
  LIB second;
  first.tklProperty(u"User", Variant(u"meier"));
  EXPECT_EQ(first.tklProperty(u"USER").as_string(), u"meier");
  EXPECT_TRUE(second.tklProperty(u"User").is_empty());
  // A new object starts with nothing, and the name check holds before
  // anything was kept.
  LIB fresh;
  EXPECT_EQ(ErrorOf([&] { fresh.tklProperty(u""); }), kErrInvalidCall);
}

TEST(PropertyBagTest, GetAndLetByName) {
  LIB lib;
  MemberTable table;
  RegisterCoreMembers(table);
  const InvokeResult let =
      InvokeMember(table, lib, "TKLPROPERTY", {Variant(u"Counter"), Variant(int32_t{7})}, true);
  EXPECT_FALSE(let.result.has_value());
  const InvokeResult get = InvokeMember(table, lib, "tklProperty", {Variant(u"counter")}, false);
  ASSERT_TRUE(get.result.has_value());
  EXPECT_EQ(get.result->as_long(), 7);
  EXPECT_EQ(lib.tklProperty(u"COUNTER").as_long(), 7);
  // Both forms are marked as designed here.
  for (const MemberKind kind : {MemberKind::kPropertyGet, MemberKind::kPropertyLet}) {
    const MemberInfo* form = table.Find("tklProperty", kind);
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->designed_here);
  }
  EXPECT_EQ(ErrorOf([&] { InvokeMember(table, lib, "tklProperty", {Variant(u"")}, false); }),
            kErrInvalidCall);
}

}  // namespace
}  // namespace norvik50
