#include "json_control_objects.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "json_container_objects.h"
#include "json_fields.h"
#include "json_line.h"
#include "json_value.h"
#include "norvik50/encoding.h"
#include "norvik50/host_controls.h"
#include "norvik50/text_control.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

// Every type name the zoom editor takes, the two third-party combo boxes
// included.
constexpr std::array<std::string_view, 7> kTextTypes = {
    "TextBox", "ComboBox", "ListBox", "ListItem", "Node", "QSCombo", "DCCombo"};
constexpr std::array<std::string_view, 8> kTextFields = {
    "text", "enabled", "locked", "tooltip", "selStart", "selLength", "focused", "container"};
constexpr std::array<std::string_view, 1> kPanelFields = {"text"};
constexpr std::array<std::string_view, 2> kOptionFields = {"buttons", "checked"};

std::shared_ptr<MemoryOptionGroup> OptionGroupFrom(const json& payload) {
  OnlyFields(payload, "OptionGroup", kOptionFields);
  auto group = std::make_shared<MemoryOptionGroup>();
  const auto buttons = payload.find("buttons");
  if (buttons != payload.end()) {
    if (!buttons->is_array()) throw JsonValueError("\"buttons\" must be a list of captions");
    for (const json& caption : *buttons) {
      if (!caption.is_string()) throw JsonValueError("a button's caption must be a string");
      group->captions.push_back(WireTextToUtf16(caption.get_ref<const std::string&>()));
    }
  }
  group->checked = LongField(payload, "checked", -1);
  return group;
}

constexpr std::array<std::string_view, 2> kFrameFields = {"name", "visible"};
constexpr std::array<std::string_view, 2> kGridFields = {"clientWidth", "columns"};
constexpr std::array<std::string_view, 2> kColumnFields = {"width", "alignment"};

const json& ListField(const json& payload, const char* name, const char* type) {
  static const json kNone = json::array();
  const auto it = payload.find(name);
  if (it == payload.end()) return kNone;
  if (!it->is_array()) throw JsonValueError(std::string(type) + " \"" + name + "\" must be a list");
  return *it;
}

// TabFrames: [{"name": "fraGeneral", "visible": true}, ...], in tab order.
std::shared_ptr<MemoryTabFrames> TabFramesFrom(const json& payload) {
  if (!payload.is_array()) throw JsonValueError("TabFrames \"v\" must be a list of frames");
  auto frames = std::make_shared<MemoryTabFrames>();
  for (const json& frame : payload) {
    OnlyFields(frame, "TabFrames", kFrameFields);
    frames->frames.push_back({TextField(frame, "name"), FlagField(frame, "visible", true)});
  }
  return frames;
}

// Grid: {"clientWidth": 6000, "columns": [{"width": 1500, "alignment": 0}]}.
std::shared_ptr<MemoryGrid> GridFrom(const json& payload) {
  OnlyFields(payload, "Grid", kGridFields);
  auto grid = std::make_shared<MemoryGrid>();
  grid->client_width = LongField(payload, "clientWidth");
  for (const json& column : ListField(payload, "columns", "Grid")) {
    OnlyFields(column, "Grid", kColumnFields);
    const int32_t alignment = LongField(column, "alignment");
    if (alignment < 0 || alignment > 2) {
      throw JsonValueError("\"alignment\" must be 0 (left), 1 (right) or 2 (centre)");
    }
    grid->columns.push_back({LongField(column, "width"), static_cast<TextAlignment>(alignment)});
  }
  return grid;
}

}  // namespace

std::optional<Variant> ControlObjectFromJson(const std::string& type, const json& payload) {
  if (type == "StatusPanel") {
    OnlyFields(payload, type, kPanelFields);
    auto panel = std::make_shared<MemoryStatusPanel>(TextField(payload, "text"));
    return Variant(std::shared_ptr<HostObject>(std::move(panel)));
  }
  if (type == "OptionGroup") {
    return Variant(std::shared_ptr<HostObject>(OptionGroupFrom(payload)));
  }
  if (type == "TabFrames") return Variant(std::shared_ptr<HostObject>(TabFramesFrom(payload)));
  if (type == "Grid") return Variant(std::shared_ptr<HostObject>(GridFrom(payload)));
  if (type == "Container") return Variant(ContainerFromJson(payload));
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
  if (const auto up = payload.find("container"); up != payload.end() && !up->is_null()) {
    box->container = ContainerFromJson(*up);
  }
  return Variant(std::shared_ptr<HostObject>(std::move(box)));
}

std::optional<json> ControlObjectToJson(const HostObject& object) {
  if (const auto* panel = dynamic_cast<const MemoryStatusPanel*>(&object)) {
    return json{{"vt", "Object"},
                {"type", "StatusPanel"},
                {"v", {{"text", Utf16ToWireText(panel->text)}}}};
  }
  if (const auto* group = dynamic_cast<const MemoryOptionGroup*>(&object)) {
    json buttons = json::array();
    for (const std::u16string& caption : group->captions) {
      buttons.push_back(Utf16ToWireText(caption));
    }
    return json{{"vt", "Object"},
                {"type", "OptionGroup"},
                {"v", {{"buttons", std::move(buttons)}, {"checked", group->CheckedIndex()}}}};
  }
  if (const auto* frames = dynamic_cast<const MemoryTabFrames*>(&object)) {
    json v = json::array();
    for (const MemoryTabFrames::Frame& frame : frames->frames) {
      v.push_back({{"name", Utf16ToWireText(frame.name)}, {"visible", frame.visible}});
    }
    return json{{"vt", "Object"}, {"type", "TabFrames"}, {"v", std::move(v)}};
  }
  if (const auto* grid = dynamic_cast<const MemoryGrid*>(&object)) {
    json columns = json::array();
    for (const MemoryGrid::Column& column : grid->columns) {
      columns.push_back(
          {{"width", column.width}, {"alignment", static_cast<int32_t>(column.alignment)}});
    }
    return json{{"vt", "Object"},
                {"type", "Grid"},
                {"v", {{"clientWidth", grid->client_width}, {"columns", std::move(columns)}}}};
  }
  if (auto container = ContainerPayload(object)) {
    return json{{"vt", "Object"}, {"type", "Container"}, {"v", std::move(*container)}};
  }
  if (const auto* box = dynamic_cast<const MemoryTextBox*>(&object)) {
    json answer = json{{"vt", "Object"},
                       {"type", Utf16ToWireText(box->TypeName())},
                       {"v",
                        {{"text", Utf16ToWireText(box->Text())},
                         {"enabled", box->enabled},
                         {"locked", box->locked},
                         {"tooltip", Utf16ToWireText(box->tooltip)},
                         {"selStart", box->sel_start},
                         {"selLength", box->sel_length},
                         {"focused", box->focused}}}};
    // Written only for a field that has one, so answers stay as they were
    // for the fields that do not.
    if (box->container != nullptr) {
      if (auto container = ContainerPayload(*box->container)) {
        answer["v"]["container"] = std::move(*container);
      }
    }
    return answer;
  }
  return std::nullopt;
}

}  // namespace norvik50::cli
