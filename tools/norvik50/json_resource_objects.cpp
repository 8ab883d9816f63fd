#include "json_resource_objects.h"

#include <cstdint>

#include "json_line.h"
#include "json_value.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "norvik50/host_controls.h"
#include "norvik50/xml.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

std::u16string Field(const json& object, const char* name) {
  const auto it = object.find(name);
  if (it == object.end()) return u"";
  if (!it->is_string()) throw JsonValueError(std::string("\"") + name + "\" must be a string");
  return WireTextToUtf16(it->get_ref<const std::string&>());
}

const json& Rows(const json& payload, const char* type) {
  if (!payload.is_array()) throw JsonValueError(std::string(type) + " \"v\" must be a list");
  return payload;
}

std::shared_ptr<XmlDocument> DocumentFrom(const json& payload) {
  if (!payload.is_object())
    throw JsonValueError("XmlDocument \"v\" must be {\"xml\":...} or {\"path\":...}");
  auto document = std::make_shared<XmlDocument>();
  const bool loaded = payload.contains("path") ? document->Load(Field(payload, "path"))
                                               : document->LoadXml(Field(payload, "xml"));
  if (!loaded) throw JsonValueError("the XML document does not load");
  return document;
}

// A List is its rows, or {"multiSelect": true, "rows": [...]} for a list
// that takes several choices.
std::shared_ptr<MemoryList> ListFrom(const json& payload) {
  const json* rows = &payload;
  bool multi = false;
  if (payload.is_object()) {
    for (const auto& [name, value] : payload.items()) {
      if (name != "rows" && name != "multiSelect") {
        throw JsonValueError("List has no field \"" + name + "\"");
      }
    }
    const auto flag = payload.find("multiSelect");
    if (flag != payload.end()) {
      if (!flag->is_boolean()) throw JsonValueError("\"multiSelect\" must be true or false");
      multi = flag->get<bool>();
    }
    const auto found = payload.find("rows");
    rows = found == payload.end() ? nullptr : &*found;
  }
  auto list = std::make_shared<MemoryList>(multi);
  if (rows == nullptr) return list;
  for (const json& row : Rows(*rows, "List")) {
    if (!row.is_object())
      throw JsonValueError("a List row must be {\"text\":...,\"itemData\":...}");
    list->AddItem(Field(row, "text"));
    const auto data = row.find("itemData");
    if (data != row.end()) {
      if (!data->is_number_integer() || *data < INT32_MIN || *data > INT32_MAX) {
        throw JsonValueError("\"itemData\" must be a whole number within a Long");
      }
      list->SetItemData(list->NewIndex(), data->get<int32_t>());
    }
    const auto selected = row.find("selected");
    if (selected != row.end()) {
      if (!selected->is_boolean()) throw JsonValueError("\"selected\" must be true or false");
      // In a single-choice list a later chosen row wins, as a click would.
      if (selected->get<bool>()) list->SetSelected(list->NewIndex(), true);
    }
  }
  return list;
}

}  // namespace

std::optional<Variant> ResourceObjectFromJson(const std::string& type, const json& payload) {
  if (type == "XmlDocument") {
    return Variant(std::shared_ptr<HostObject>(DocumentFrom(payload)));
  }
  if (type == "XmlNode") {
    // A node is the root element of its own small document.
    const auto document = DocumentFrom(payload);
    auto node = document->SelectSingleNode(u"/*");
    return Variant(std::shared_ptr<HostObject>(std::move(node)));
  }
  if (type == "List") return Variant(std::shared_ptr<HostObject>(ListFrom(payload)));
  if (type == "TabStrip") {
    auto strip = std::make_shared<MemoryTabStrip>();
    for (const json& tab : Rows(payload, "TabStrip")) {
      if (!tab.is_object()) throw JsonValueError("a tab must be {\"key\":...,\"caption\":...}");
      try {
        strip->Tabs().Add(std::nullopt, Field(tab, "key"), Field(tab, "caption"));
      } catch (const Error&) {
        throw JsonValueError("two tabs with one key");
      }
      const auto selected = tab.find("selected");
      if (selected != tab.end()) {
        if (!selected->is_boolean()) throw JsonValueError("\"selected\" must be true or false");
        if (selected->get<bool>()) strip->selected = static_cast<int32_t>(strip->tabs().size()) - 1;
      }
    }
    return Variant(std::shared_ptr<HostObject>(std::move(strip)));
  }
  return std::nullopt;
}

std::optional<json> ResourceObjectToJson(const HostObject& object) {
  if (const auto* document = dynamic_cast<const XmlDocument*>(&object)) {
    return json{{"vt", "Object"},
                {"type", "XmlDocument"},
                {"v", {{"xml", Utf16ToWireText(document->Xml())}}}};
  }
  if (const auto* node = dynamic_cast<const XmlNode*>(&object)) {
    return json{
        {"vt", "Object"}, {"type", "XmlNode"}, {"v", {{"xml", Utf16ToWireText(node->Xml())}}}};
  }
  if (const auto* list = dynamic_cast<const MemoryList*>(&object)) {
    json rows = json::array();
    for (const MemoryList::Row& row : list->rows()) {
      json out = {{"text", Utf16ToWireText(row.text)}, {"itemData", row.item_data}};
      if (row.selected) out["selected"] = true;
      rows.push_back(std::move(out));
    }
    if (list->MultiSelect()) {
      json v = {{"multiSelect", true}, {"rows", std::move(rows)}};
      return json{{"vt", "Object"}, {"type", "List"}, {"v", std::move(v)}};
    }
    return json{{"vt", "Object"}, {"type", "List"}, {"v", std::move(rows)}};
  }
  if (const auto* strip = dynamic_cast<const MemoryTabStrip*>(&object)) {
    json tabs = json::array();
    for (const MemoryTabStrip::Tab& tab : strip->tabs()) {
      json out = {{"key", Utf16ToWireText(tab.key)}, {"caption", Utf16ToWireText(tab.caption)}};
      if (static_cast<int32_t>(tabs.size()) == strip->SelectedIndex()) out["selected"] = true;
      tabs.push_back(std::move(out));
    }
    return json{{"vt", "Object"}, {"type", "TabStrip"}, {"v", std::move(tabs)}};
  }
  return std::nullopt;
}

}  // namespace norvik50::cli
