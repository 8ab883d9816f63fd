#include "json_form_objects.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "json_fields.h"
#include "json_line.h"
#include "json_picture_objects.h"
#include "json_value.h"
#include "norvik50/form.h"
#include "norvik50/list_view.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 15> kFormFields = {
    "name",     "left",      "top",     "width",   "height",  "windowState",  "caption", "resId",
    "controls", "listViews", "menuBar", "topMost", "visible", "cornerRadius", "shadow"};
constexpr std::array<std::string_view, 5> kControlFields = {"name", "caption", "resId", "tooltip",
                                                            "tooltipResId"};
constexpr std::array<std::string_view, 6> kListViewFields = {"name",       "columns",   "rows",
                                                             "sortColumn", "sortOrder", "style"};
constexpr std::array<std::string_view, 3> kColumnFields = {"header", "width", "headerResId"};
constexpr std::array<std::string_view, 5> kRowFields = {"texts", "checked", "selected", "tooltips",
                                                        "icon"};

const json* ListField(const json& payload, const char* name, const std::string& owner) {
  const auto it = payload.find(name);
  if (it == payload.end()) return nullptr;
  if (!it->is_array()) throw JsonValueError(owner + " \"" + name + "\" must be a list");
  return &*it;
}

std::vector<std::u16string> TextsField(const json& payload, const char* name) {
  std::vector<std::u16string> texts;
  if (const json* list = ListField(payload, name, "a ListView row")) {
    for (const json& text : *list) {
      if (!text.is_string())
        throw JsonValueError(std::string("\"") + name + "\" must hold strings");
      texts.push_back(WireTextToUtf16(text.get_ref<const std::string&>()));
    }
  }
  return texts;
}

json TextsToJson(const std::vector<std::u16string>& texts) {
  json list = json::array();
  for (const std::u16string& text : texts) list.push_back(Utf16ToWireText(text));
  return list;
}

MemoryListView::Row RowFrom(const json& payload) {
  OnlyFields(payload, "a ListView row", kRowFields);
  MemoryListView::Row row;
  row.texts = TextsField(payload, "texts");
  row.tooltips = TextsField(payload, "tooltips");
  row.checked = FlagField(payload, "checked", false);
  row.selected = FlagField(payload, "selected", false);
  // The row's icon: a Picture payload; absent or null for none.
  const auto icon = payload.find("icon");
  if (icon != payload.end() && !icon->is_null()) row.icon = PictureFromJson(*icon);
  return row;
}

std::shared_ptr<MemoryListView> ListViewFrom(const json& payload) {
  OnlyFields(payload, "ListView", kListViewFields);
  auto list = std::make_shared<MemoryListView>(TextField(payload, "name"));
  if (const json* columns = ListField(payload, "columns", "ListView")) {
    for (const json& column : *columns) {
      OnlyFields(column, "a ListView column", kColumnFields);
      list->columns.push_back({TextField(column, "header"), 0, TextField(column, "headerResId")});
      // Kept as a list view keeps a width it is given.
      list->SetColumnWidth(list->ColumnCount() - 1, LongField(column, "width"));
    }
  }
  if (const json* rows = ListField(payload, "rows", "ListView")) {
    for (const json& row : *rows) list->rows.push_back(RowFrom(row));
  }
  // The host's numbers: columns from 1, 0 for a list view not sorted.
  const int32_t sort_column = LongField(payload, "sortColumn");
  const int32_t sort_order = LongField(payload, "sortOrder");
  if (sort_column < 0 || sort_column > list->ColumnCount()) {
    throw JsonValueError("\"sortColumn\" must be 0 (not sorted) or one of the columns");
  }
  if (sort_order < 0 || sort_order > 1) {
    throw JsonValueError("\"sortOrder\" must be 0 (ascending) or 1 (descending)");
  }
  list->sort = {sort_column - 1, sort_order == 1};
  list->style = LongField(payload, "style");
  if ((list->style & ~kListViewAllStyles) != 0) {
    throw JsonValueError("\"style\" must be made of the bits 1, 2, 4, 8, 16, 32, 64 and 128");
  }
  return list;
}

std::shared_ptr<MemoryForm> FormFrom(const json& payload) {
  OnlyFields(payload, "Form", kFormFields);
  auto form = std::make_shared<MemoryForm>(TextField(payload, "name"));
  form->placement.bounds = {LongField(payload, "left"), LongField(payload, "top"),
                            LongField(payload, "width"), LongField(payload, "height")};
  const int32_t state = LongField(payload, "windowState");
  if (state < 0 || state > 2) {
    throw JsonValueError("\"windowState\" must be 0 (normal), 1 (minimised) or 2 (maximised)");
  }
  form->placement.state = static_cast<WindowState>(state);
  form->caption = TextField(payload, "caption");
  form->res_id = TextField(payload, "resId");
  form->menu_bar = FlagField(payload, "menuBar", false);
  form->top_most = FlagField(payload, "topMost", false);
  form->visible = FlagField(payload, "visible", false);
  form->corner_radius = LongField(payload, "cornerRadius");
  form->shadow = FlagField(payload, "shadow", false);
  if (const json* controls = ListField(payload, "controls", "Form")) {
    for (const json& control : *controls) {
      OnlyFields(control, "a Form control", kControlFields);
      form->controls.push_back({TextField(control, "name"), TextField(control, "caption"),
                                TextField(control, "resId"), TextField(control, "tooltip"),
                                TextField(control, "tooltipResId")});
    }
  }
  if (const json* lists = ListField(payload, "listViews", "Form")) {
    for (const json& list : *lists) form->list_views.push_back(ListViewFrom(list));
  }
  return form;
}

json ListViewToJson(const MemoryListView& list) {
  json columns = json::array();
  for (const MemoryListView::Column& column : list.columns) {
    columns.push_back({{"header", Utf16ToWireText(column.header)},
                       {"width", column.width_twips},
                       {"headerResId", Utf16ToWireText(column.header_res_id)}});
  }
  json rows = json::array();
  for (const MemoryListView::Row& row : list.rows) {
    json out = {
        {"texts", TextsToJson(row.texts)}, {"checked", row.checked}, {"selected", row.selected}};
    // Only where there is one: a list view without tooltips answers as
    // it did before they were kept.
    if (std::any_of(row.tooltips.begin(), row.tooltips.end(),
                    [](const std::u16string& tip) { return !tip.empty(); })) {
      out["tooltips"] = TextsToJson(row.tooltips);
    }
    // Likewise written only for rows with an icon.
    if (row.icon) out["icon"] = PictureToJson(*row.icon);
    rows.push_back(std::move(out));
  }
  json out = {{"name", Utf16ToWireText(list.name)},
              {"columns", std::move(columns)},
              {"rows", std::move(rows)},
              {"sortColumn", list.sort.column + 1},
              {"sortOrder", list.sort.descending ? 1 : 0}};
  if (list.style != 0) out["style"] = list.style;
  return out;
}

json FormToJson(const MemoryForm& form) {
  json controls = json::array();
  for (const MemoryForm::Control& control : form.controls) {
    controls.push_back({{"name", Utf16ToWireText(control.name)},
                        {"caption", Utf16ToWireText(control.caption)},
                        {"resId", Utf16ToWireText(control.res_id)},
                        {"tooltip", Utf16ToWireText(control.tooltip)},
                        {"tooltipResId", Utf16ToWireText(control.tooltip_res_id)}});
  }
  json lists = json::array();
  for (const auto& list : form.list_views) {
    if (list) lists.push_back(ListViewToJson(*list));
  }
  const TwipsRect& b = form.placement.bounds;
  return {{"name", Utf16ToWireText(form.name)},
          {"left", b.left},
          {"top", b.top},
          {"width", b.width},
          {"height", b.height},
          {"windowState", static_cast<int32_t>(form.placement.state)},
          {"caption", Utf16ToWireText(form.caption)},
          {"resId", Utf16ToWireText(form.res_id)},
          {"controls", std::move(controls)},
          {"listViews", std::move(lists)},
          {"menuBar", form.menu_bar},
          {"topMost", form.top_most},
          {"visible", form.visible},
          {"cornerRadius", form.corner_radius},
          {"shadow", form.shadow}};
}

}  // namespace

std::optional<Variant> FormObjectFromJson(const std::string& type, const json& payload) {
  if (type == "Form") return Variant(std::shared_ptr<HostObject>(FormFrom(payload)));
  if (type == "ListView") return Variant(std::shared_ptr<HostObject>(ListViewFrom(payload)));
  return std::nullopt;
}

std::optional<json> FormObjectToJson(const HostObject& object) {
  if (const auto* form = dynamic_cast<const MemoryForm*>(&object)) {
    return json{{"vt", "Object"}, {"type", "Form"}, {"v", FormToJson(*form)}};
  }
  if (const auto* list = dynamic_cast<const MemoryListView*>(&object)) {
    return json{{"vt", "Object"}, {"type", "ListView"}, {"v", ListViewToJson(*list)}};
  }
  return std::nullopt;
}

}  // namespace norvik50::cli
