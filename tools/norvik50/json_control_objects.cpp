#include "json_control_objects.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "json_fields.h"
#include "json_line.h"
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

}  // namespace

std::optional<Variant> ControlObjectFromJson(const std::string& type, const json& payload) {
  if (type == "StatusPanel") {
    OnlyFields(payload, type, kPanelFields);
    auto panel = std::make_shared<MemoryStatusPanel>(TextField(payload, "text"));
    return Variant(std::shared_ptr<HostObject>(std::move(panel)));
  }
  if (std::find(kTextTypes.begin(), kTextTypes.end(), type) == kTextTypes.end()) {
    return std::nullopt;
  }
  OnlyFields(payload, type, kTextFields);
  auto box = std::make_shared<MemoryTextBox>(std::u16string(type.begin(), type.end()));
  box->SetText(TextField(payload, "text"));
  box->enabled = FlagField(payload, "enabled", true);
  box->locked = FlagField(payload, "locked", false);
  box->tooltip = TextField(payload, "tooltip");
  // Kept inside the text, as the box keeps a selection it is given.
  box->Select(LongField(payload, "selStart"), LongField(payload, "selLength"));
  box->focused = FlagField(payload, "focused", false);
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
