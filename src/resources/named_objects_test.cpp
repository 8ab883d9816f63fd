// The library's own objects by name, as hosts without constructors get
// them, and the use they are made for: handing them to other members.
#include "resources/named_objects.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "core/invoke.h"
#include "core/member_registry.h"
#include "norvik50/collection.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/lib.h"
#include "norvik50/xml.h"
#include "resources/resource_document.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

template <typename T>
std::shared_ptr<T> As(const std::shared_ptr<HostObject>& object) {
  return std::dynamic_pointer_cast<T>(object);
}

TEST(NamedObjectsTest, ACollectionFromNothingOrAnArray) {
  // Each row: the value, and the items the collection holds.
  struct Case {
    std::optional<Variant> value;
    std::vector<std::u16string> items;
  } cases[] = {
      {std::nullopt, {}},
      {Variant(), {}},
      {Variant::Null(), {}},
      {Variant(SafeArray()), {}},  // never dimensioned
      {Variant(SafeArray(5, {Variant(u"a"), Variant(u"b"), Variant(u"c")})), {u"a", u"b", u"c"}},
  };
  for (const Case& c : cases) {
    const auto collection = As<Collection>(MakeNamedObject(u"collection", c.value));
    ASSERT_NE(collection, nullptr);
    ASSERT_EQ(collection->Count(), static_cast<int32_t>(c.items.size()));
    for (std::size_t i = 0; i < c.items.size(); ++i) {
      EXPECT_EQ(collection->Item(static_cast<int32_t>(i + 1)).as_string(), c.items[i]);
    }
  }
  EXPECT_EQ(ErrorOf([] { MakeNamedObject(u"Collection", Variant(u"a,b")); }), kErrTypeMismatch);
  // Each call makes a new one.
  EXPECT_NE(MakeNamedObject(u"Collection", std::nullopt),
            MakeNamedObject(u"Collection", std::nullopt));
}

// "Z:\tmp\x" for "/tmp/x".
std::u16string WindowsForm(const std::string& linux_path) {
  std::u16string path = u"Z:" + FromUtf8(linux_path);
  for (char16_t& c : path) {
    if (c == u'/') c = u'\\';
  }
  return path;
}

TEST(NamedObjectsTest, ADocumentFromTextOrFile) {
  testing::TempFolder temp;
  std::ofstream(temp.File("Form.xml")) << "<resources><item name=\"a\" text=\"A\"/></resources>";
  std::ofstream(temp.File("broken.xml")) << "<resources><item>";
  const std::u16string from_file = FromUtf8(temp.File("Form.xml"));
  // Each row: the value, and the item's text in the document ("" for an
  // empty document).
  struct Case {
    std::optional<Variant> value;
    std::u16string text;
  } cases[] = {
      {std::nullopt, u""},
      {Variant(), u""},
      {Variant(u"<resources><item name=\"a\" text=\"T\"/></resources>"), u"T"},
      {Variant(u"\r\n  <resources><item name=\"a\" text=\"lead\"/></resources>"), u"lead"},
      {Variant(from_file), u"A"},
      // A Windows path is found without regard to case, as Windows finds it
      // (Z: is the root).
      {Variant(WindowsForm(temp.File("FORM.XML"))), u"A"},
  };
  for (const Case& c : cases) {
    const auto document = As<XmlDocument>(MakeNamedObject(u"XMLDOCUMENT", c.value));
    ASSERT_NE(document, nullptr);
    const auto node = document->SelectSingleNode(u"/resources/item[@name='a']");
    EXPECT_EQ(node ? node->Attribute(u"text") : u"", c.text);
  }
  // Each row: a value that makes no document, and the error.
  struct Bad {
    Variant value;
    int error;
  } bad[] = {
      {Variant(u"<resources><item>"), kErrInvalidCall},
      {Variant(FromUtf8(temp.File("broken.xml"))), kErrInvalidCall},
      {Variant(FromUtf8(temp.File("missing.xml"))), kErrFileNotFound},
      {Variant(FromUtf8(temp.path())), kErrFileNotFound},  // a folder
      {Variant(u"Q:\\nowhere\\form.xml"), kErrFileNotFound},
      {Variant(int32_t{1}), kErrTypeMismatch},
  };
  for (const Bad& b : bad) {
    EXPECT_EQ(ErrorOf([&] { MakeNamedObject(u"XmlDocument", b.value); }), b.error);
  }
}

TEST(NamedObjectsTest, ResourcesIsACopyOfTheBuiltInDocument) {
  const auto copy = As<XmlDocument>(MakeNamedObject(u"Resources", std::nullopt));
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->Xml(), ResourceDocument().Xml());
  // Emptying the copy leaves the library's captions alone.
  copy->LoadXml(u"<resources/>");
  EXPECT_EQ(GetResourceItem(u"cmdCancel", 1), u"Abbrechen");
  EXPECT_EQ(ErrorOf([] { MakeNamedObject(u"Resources", Variant(u"x")); }), kErrInvalidCall);
}

TEST(NamedObjectsTest, UnknownNamesAreRefused) {
  for (const char16_t* name : {u"", u"Dictionary", u"XmlNode", u"Collections", u"DEFLATE"}) {
    EXPECT_EQ(ErrorOf([&] { MakeNamedObject(name, std::nullopt); }), kErrInvalidCall)
        << ToUtf8(name);
  }
}

TEST(NamedObjectsTest, ByNameTheObjectsServeTheOtherMembers) {
  LIB lib;
  MemberTable table;
  RegisterResourceMembers(table);
  RegisterTextMembers(table);
  const InvokeResult resources =
      InvokeMember(table, lib, "tklGlobalObj", {Variant(u"resources")}, false);
  ASSERT_TRUE(resources.result && resources.result->is_object());
  // The built-in document answers a resource lookup in both languages.
  const InvokeResult english =
      InvokeMember(table, lib, "tklXMLRes", {*resources.result, Variant(u"cmdCancel")}, false);
  EXPECT_NE(english.result->as_string(), u"");
  const InvokeResult collection =
      InvokeMember(table, lib, "TKLGLOBALOBJ",
                   {Variant(u"Collection"), Variant(SafeArray(0, {Variant(u"x")}))}, false);
  ASSERT_TRUE(collection.result && collection.result->is_object());
  EXPECT_EQ(As<Collection>(collection.result->as_object())->Count(), 1);
  // A collection from tklGlobalObj is one tklClearCollection empties.
  std::shared_ptr<HostObject> object = collection.result->as_object();
  lib.tklClearCollection(object);
  EXPECT_EQ(As<Collection>(object)->Count(), 0);
  const MemberInfo* member = table.Find("tklGlobalObj", MemberKind::kMethod);
  ASSERT_NE(member, nullptr);
  EXPECT_TRUE(member->designed_here);
}

}  // namespace
}  // namespace norvik50
