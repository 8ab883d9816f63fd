#include "json_control_objects.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "json_line.h"
#include "json_value.h"
#include "norvik50/encoding.h"
#include "norvik50/text_control.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

// Every type name the zoom editor takes, the two third-party combo boxes
// included.
constexpr std::array<std::string_view, 7> kTextTypes = {
    "TextBox", "ComboBox", "ListBox", "ListItem", "Node", "QSCombo", "DCCombo"};
constexpr std::array<std::string_view, 7> kTextFields = {
    "text", "enabled", "locked", "tooltip", "selStart", "selLength", "focused"};
constexpr std::array<std::string_view, 1> kPanelFields = {"text"};

// A misspelt field would otherwise be dropped without a word, and the
// control would answer with its default.
void OnlyFields(const json& payload, const std::string& type,
                std::span<const std::string_view> allowed) {
  if (!payload.is_object()) throw JsonValueError(type + " \"v\" must be an object");
  for (const auto& [name, value] : payload.items()) {
    if (std::find(allowed.begin(), allowed.end(), name) == allowed.end()) {
      throw JsonValueError(type + " has no field \"" + name + "\"");
    }
  }
}

std::u16string Text(const json& payload, const char* name) {
  const auto it = payload.find(name);
  if (it == payload.end()) return u"";
  if (!it->is_string()) throw JsonValueError(std::string("\"") + name + "\" must be a string");
  return WireTextToUtf16(it->get_ref<const std::string&>());
}

bool Flag(const json& payload, const char* name, bool otherwise) {
  const auto it = payload.find(name);
  if (it == payload.end()) return otherwise;
  if (!it->is_boolean()) throw JsonValueError(std::string("\"") + name + "\" must be true or false");
  return it->get<bool>();
}

int32_t Whole(const json& payload, const char* name) {
  const auto it = payload.find(name);
  if (it == payload.end()) return 0;
  if (!it->is_number_integer() || *it < INT32_MIN || *it > INT32_MAX) {
    throw JsonValueError(std::string("\"") + name + "\" must be a whole number within a Long");
  }
  return it->get<int32_t>();
}

}  // namespace

std::optional<Variant> ControlObjectFromJson(const std::string& type, const json& payload) {
  if (type == "StatusPanel") {
    OnlyFields(payload, type, kPanelFields);
    auto panel = std::make_shared<MemoryStatusPanel>(Text(payload, "text"));
    return Variant(std::shared_ptr<HostObject>(std::move(panel)));
  }
  if (std::find(kTextTypes.begin(), kTextTypes.end(), type) == kTextTypes.end()) {
    return std::nullopt;
  }
  OnlyFields(payload, type, kTextFields);
  auto box = std::make_shared<MemoryTextBox>(std::u16string(type.begin(), type.end()));
  box->SetText(Text(payload, "text"));
  box->enabled = Flag(payload, "enabled", true);
  box->locked = Flag(payload, "locked", false);
  box->tooltip = Text(payload, "tooltip");
  // Kept inside the text, as the box keeps a selection it is given.
  box->Select(Whole(payload, "selStart"), Whole(payload, "selLength"));
  box->focused = Flag(payload, "focused", false);
  return Variant(std::shared_ptr<HostObject>(std::move(box)));
}

std::optional<json> ControlObjectToJson(const HostObject& object) {
  if (const auto* panel = dynamic_cast<const MemoryStatusPanel*>(&object)) {
    return json{{"vt", "Object"},
                {"type", "StatusPanel"},
                {"v", {{"text", Utf16ToWireText(panel->text)}}}};
  }
  if (const auto* box = dynamic_cast<const MemoryTextBox*>(&object)) {
    return json{{"vt", "Object"},
                {"type", Utf16ToWireText(box->TypeName())},
                {"v",
                 {{"text", Utf16ToWireText(box->Text())},
                  {"enabled", box->enabled},
                  {"locked", box->locked},
                  {"tooltip", Utf16ToWireText(box->tooltip)},
                  {"selStart", box->sel_start},
                  {"selLength", box->sel_length},
                  {"focused", box->focused}}}};
  }
  return std::nullopt;
}

}  // namespace norvik50::cli
