// LIB: items of a host's resource document, and host lists filled from it.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

// The counter's value that `text` is the decimal form of, as DecimalText
// writes it (no sign, no leading zero, no blank); -1 for any other text,
// which equals no counter value.
int32_t CounterValue(std::string_view text) {
  if (text.empty() || text.size() > 5 || (text[0] == '0' && text.size() > 1)) return -1;
  int32_t value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return -1;
    value = value * 10 + (c - '0');
  }
  return value <= INT16_MAX ? value : -1;
}

// The items of one name, indexed by their number: for each counter value n
// the first item in document order whose number attribute is n's decimal
// form, as the expression ItemsNamed(name) + "[@number=\"n\"]" selects it.
// Selecting the items once makes a list of n numbers cost n look-ups
// instead of n evaluations over the whole document.
class ItemsByNumber {
 public:
  ItemsByNumber(const XmlDocument& document, std::u16string_view name) {
    for (const pugi::xpath_node& found : SelectAll(document, ItemsNamed(name))) {
      // "01", " 1" or "+1" equal no counter value: the comparison is of texts.
      const int32_t n = CounterValue(found.node().attribute("number").value());
      if (n < 0) continue;
      if (static_cast<std::size_t>(n) >= first_.size()) first_.resize(n + 1);
      if (!first_[n]) first_[n] = found.node();
    }
  }

  // The item numbered `number`; an empty node when there is none.
  pugi::xml_node Item(int16_t number) const {
    return static_cast<std::size_t>(number) < first_.size() ? first_[number] : pugi::xml_node();
  }

 private:
  std::vector<pugi::xml_node> first_;
};

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
    const auto* document = dynamic_cast<const XmlDocument*>(oDOMDoc.get());
    if (!document) return;  // tklXMLRes finds nothing: no first row
    // A double quote in the name ends the literal early and makes the
    // expression something else (a union, a broken one), with the number
    // condition attached to whatever comes last; only tklXMLRes itself
    // reads such a name right.
    const bool plain_name = sResID.find(u'"') == std::u16string_view::npos;
    std::optional<ItemsByNumber> items;
    if (plain_name) items.emplace(*document, sResID);
    // The counter is a 16-bit Integer: after 32767 it overflows, which ends
    // the filling like any other error.
    for (int32_t n = 0; n <= INT16_MAX; ++n) {
      const auto number = static_cast<int16_t>(n);
      std::u16string text = plain_name ? GetXMLAttribute(items->Item(number), u"text")
                                       : tklXMLRes(oDOMDoc, sResID, number);
      if (text.empty()) return;  // the first gap ends the list
      text = text.substr(0, text.find(u'|'));
      if (!sInclNoFormat.empty()) text = FormatValue(Variant(number), sInclNoFormat) + text;
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
