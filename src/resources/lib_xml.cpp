// LIB: items of a host's resource document, and host lists filled from it.
#include "norvik50/dispatch.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "numeric/convert_to_type.h"
#include "numeric/format.h"
#include "resources/resource_document.h"
#include "resources/xml_impl.h"

namespace norvik50 {
namespace {

// "/resources/item[@name=\"NAME\"]", the name put in without escaping.
std::u16string ItemsNamed(std::u16string_view name) {
  return u"/resources/item[@name=\"" + std::u16string(name) + u"\"]";
}

}  // namespace

std::u16string LIB::tklXMLRes(const std::shared_ptr<HostObject>& oDOMDoc, std::u16string_view sName,
                              int16_t iNumber) {
  try {
    const auto* document = dynamic_cast<const XmlDocument*>(oDOMDoc.get());
    if (!document) return u"";
    std::u16string xpath = ItemsNamed(sName);
    // Any number but -1 (65535 unsigned) selects by number as well; there
    // is deliberately no language condition.
    if (static_cast<uint16_t>(iNumber) < 65535) {
      xpath += u"[@number=\"" + DecimalText(iNumber) + u"\"]";
    }
    return GetXMLAttribute(SelectFirst(*document, xpath), u"text");
  } catch (...) {
    return u"";
  }
}

std::u16string LIB::tklXMLItemProp(const std::shared_ptr<HostObject>& oXMLNode,
                                   std::u16string_view sProp) {
  const auto* node = dynamic_cast<const XmlNode*>(oXMLNode.get());
  return node ? node->Attribute(sProp) : u"";
}

void LIB::tklXMLFillList(const std::shared_ptr<HostObject>& oDOMDoc,
                         const std::shared_ptr<HostObject>& oList, std::u16string_view sName) {
  try {
    auto* list = dynamic_cast<ListControl*>(oList.get());
    if (!list) return;
    list->Clear();
    const auto* document = dynamic_cast<const XmlDocument*>(oDOMDoc.get());
    if (!document) return;
    for (const pugi::xpath_node& item : SelectAll(*document, ItemsNamed(sName))) {
      list->AddItem(GetXMLAttribute(item.node(), u"text"));
      const Variant number = tklCVal(3, Variant(GetXMLAttribute(item.node(), u"number")));
      list->SetItemData(list->NewIndex(), CoerceTo(number, VarType::kLong).as_long());
    }
  } catch (...) {
    // The list keeps the rows added so far.
  }
}

void LIB::tklXMLFillComboWithResList(const std::shared_ptr<HostObject>& oDOMDoc,
                                     const std::shared_ptr<HostObject>& oCombo,
                                     std::u16string_view sResID,
                                     std::u16string_view sInclNoFormat) {
  try {
    auto* combo = dynamic_cast<ListControl*>(oCombo.get());
    if (!combo) return;
    combo->Clear();
    // The counter is a 16-bit Integer: after 32767 it overflows, which ends
    // the filling like any other error.
    for (int32_t n = 0; n <= INT16_MAX; ++n) {
      std::u16string text = tklXMLRes(oDOMDoc, sResID, static_cast<int16_t>(n));
      if (text.empty()) return;  // the first gap ends the list
      text = text.substr(0, text.find(u'|'));
      if (!sInclNoFormat.empty()) {
        text = FormatValue(Variant(static_cast<int16_t>(n)), sInclNoFormat) + text;
      }
      combo->AddItem(text);
      combo->SetItemData(combo->NewIndex(), n);
    }
  } catch (...) {
  }
}

void LIB::tklXMLFillTabStrip(const std::shared_ptr<HostObject>& oDOMDoc,
                             const std::shared_ptr<HostObject>& oTab, std::u16string_view sName) {
  try {
    auto* strip = dynamic_cast<TabStrip*>(oTab.get());
    if (!strip) return;
    TabCollection& tabs = strip->Tabs();
    tabs.Clear();
    const auto* document = dynamic_cast<const XmlDocument*>(oDOMDoc.get());
    if (!document) return;
    for (const pugi::xpath_node& item : SelectAll(*document, ItemsNamed(sName))) {
      // A number that two items share makes a duplicate key: the strip
      // refuses the second tab, and the filling stops there.
      tabs.Add(std::nullopt, u"T" + GetXMLAttribute(item.node(), u"number"),
               GetXMLAttribute(item.node(), u"text"));
    }
  } catch (...) {
  }
}

}  // namespace norvik50
