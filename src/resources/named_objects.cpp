#include "resources/named_objects.h"

#include "core/name_fold.h"
#include "core/path_lookup.h"
#include "norvik50/collection.h"
#include "norvik50/error.h"
#include "norvik50/xml.h"
#include "resources/resource_document.h"

namespace norvik50 {
namespace {

[[noreturn]] void Fail(int32_t number, std::u16string description) {
  throw Error(number, std::move(description), std::u16string(kErrorSource));
}

bool HasValue(const std::optional<Variant>& value) {
  return value && !value->is_empty() && !value->is_null();
}

std::shared_ptr<HostObject> NewCollection(const std::optional<Variant>& value) {
  auto collection = std::make_shared<Collection>();
  if (!HasValue(value)) return collection;
  if (!value->is_array()) Fail(kErrTypeMismatch, u"A Collection is made from an array");
  // An array that was never dimensioned has no elements to add.
  const SafeArray& items = value->as_array();
  if (items.is_bounded()) {
    for (const Variant& item : items.items()) collection->Add(item);
  }
  return collection;
}

bool LooksLikeXml(std::u16string_view text) {
  const auto first = text.find_first_not_of(u" \t\r\n\uFEFF");
  return first != std::u16string_view::npos && text[first] == u'<';
}

std::shared_ptr<HostObject> NewDocument(const std::optional<Variant>& value) {
  auto document = std::make_shared<XmlDocument>();
  if (!HasValue(value)) return document;
  if (!value->is_string()) Fail(kErrTypeMismatch, u"An XmlDocument is made from a text");
  const std::u16string& source = value->as_string();
  if (LooksLikeXml(source)) {
    if (!document->LoadXml(source)) Fail(kErrInvalidCall, u"The text is not well-formed XML");
    return document;
  }
  PathStatus status;
  if (!MapWindowsPath(source, &status) || !status.exists || status.directory) {
    Fail(kErrFileNotFound, u"No XML file " + source);
  }
  if (!document->Load(source)) {
    Fail(kErrInvalidCall, u"The file " + source + u" cannot be read or is not well-formed XML");
  }
  return document;
}

std::shared_ptr<HostObject> CopyOfResources(const std::optional<Variant>& value) {
  if (HasValue(value)) Fail(kErrInvalidCall, u"Resources takes no value");
  // A copy: what the host does to it never reaches the dialogs' captions.
  auto document = std::make_shared<XmlDocument>();
  document->LoadXml(ResourceDocument().Xml());
  return document;
}

}  // namespace

std::shared_ptr<HostObject> MakeNamedObject(std::u16string_view name,
                                            const std::optional<Variant>& value) {
  const std::u16string folded = FoldName(name);
  if (folded == FoldName(u"Collection")) return NewCollection(value);
  if (folded == FoldName(u"XmlDocument")) return NewDocument(value);
  if (folded == FoldName(u"Resources")) return CopyOfResources(value);
  Fail(kErrInvalidCall, u"Unknown named object \"" + std::u16string(name) +
                            u"\" (known: Collection, XmlDocument, Resources)");
}

}  // namespace norvik50
