#include "resources/resource_document.h"

#include "resources/own_resources.h"
#include "resources/xml_impl.h"

namespace norvik50 {
namespace {

constexpr int16_t kBuiltinDocumentId = 1;
constexpr std::u16string_view kBuiltinDocumentType = u"XML";

}  // namespace

std::u16string DecimalText(int32_t value) {
  const std::string digits = std::to_string(value);
  return std::u16string(digits.begin(), digits.end());
}

XmlDocument& ResourceDocument() {
  static XmlDocument document;
  if (document.IsEmpty()) {
    document.LoadXml(LoadResourceText(kBuiltinDocumentId, kBuiltinDocumentType));
  }
  return document;
}

std::u16string GetResourceItem(std::u16string_view name, int16_t langid) {
  // The expression is built as the lookup has always built it: the name is
  // put between double quotes without escaping.
  const std::u16string xpath = u"/resources/item[@langid=\"" + DecimalText(langid) +
                               u"\"][@name=\"" + std::u16string(name) + u"\"]";
  return GetXMLAttribute(SelectFirst(ResourceDocument(), xpath), u"text");
}

std::u16string LanguageCode(int16_t langid) {
  const std::u16string xpath = u"/resources/lang[@langid=\"" + DecimalText(langid) + u"\"]";
  return GetXMLAttribute(SelectFirst(ResourceDocument(), xpath), u"extension");
}

}  // namespace norvik50
