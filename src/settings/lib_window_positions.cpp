// LIB: where a host's forms stood and how wide their list columns were.
#include <climits>
#include <string>

#include "core/library_state.h"
#include "norvik50/error.h"
#include "norvik50/form.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "settings/window_placement.h"

namespace norvik50 {
namespace {

// What a getter answers for a value that is not there: no stored size or
// position can be this.
constexpr int32_t kNotStored = INT32_MIN;

[[noreturn]] void Refuse(std::u16string description) {
  throw Error(kErrInvalidCall, std::move(description), std::u16string(kErrorSource));
}

template <typename Control>
Control& Require(const std::shared_ptr<HostObject>& object, std::u16string_view what) {
  auto* control = dynamic_cast<Control*>(object.get());
  if (control == nullptr) Refuse(u"The object is no " + std::u16string(what) + u".");
  return *control;
}

// The key of a form: a form without a name would share it with every
// other nameless form, so it has none.
std::u16string FormKey(const Form& form, std::u16string_view sub_key) {
  const std::u16string name = form.Name();
  if (name.empty()) Refuse(u"The form has no name.");
  return (sub_key.empty() ? BaseKey() : std::u16string(sub_key)) + u"\\Positions\\Forms\\" + name;
}

std::u16string ListViewKey(const Form& form, const ListView& list, std::u16string_view sub_key) {
  const std::u16string name = list.Name();
  if (name.empty()) Refuse(u"The list view has no name.");
  return FormKey(form, sub_key) + u"\\" + name;
}

std::u16string ColumnValue(int32_t column) {
  const std::string number = std::to_string(column + 1);
  return u"Col" + std::u16string(number.begin(), number.end());
}

}  // namespace

bool LIB::tklSaveWindowPos(const std::shared_ptr<HostObject>& oForm,
                           std::u16string_view sRegSubKey) {
  const Form& form = Require<Form>(oForm, u"form");
  const std::u16string key = FormKey(form, sRegSubKey);
  const WindowPlacement placement = form.Placement();
  // A minimised form opens normal next time: nobody wants to start in
  // the task bar.
  const int32_t state = placement.state == WindowState::kMaximized ? 2 : 0;
  bool stored = true;
  const auto put = [&](std::u16string_view name, int32_t value) {
    stored = tkrSetValue(HKEY_CURRENT_USER, key, name, Variant(value)) && stored;
  };
  put(u"Left", placement.bounds.left);
  put(u"Top", placement.bounds.top);
  put(u"Width", placement.bounds.width);
  put(u"Height", placement.bounds.height);
  put(u"WindowState", state);
  return stored;
}

bool LIB::tklLoadWindowPos(const std::shared_ptr<HostObject>& oForm, std::u16string_view sRegSubKey,
                           bool bPositionOnly) {
  Form& form = Require<Form>(oForm, u"form");
  const std::u16string key = FormKey(form, sRegSubKey);
  const auto get = [&](std::u16string_view name) {
    return tkrGetLong(HKEY_CURRENT_USER, key, name, kNotStored);
  };
  WindowPlacement placement = form.Placement();
  TwipsRect stored{get(u"Left"), get(u"Top"), get(u"Width"), get(u"Height")};
  if (stored.left == kNotStored || stored.top == kNotStored || stored.width == kNotStored ||
      stored.height == kNotStored || stored.width < 1 || stored.height < 1) {
    return false;
  }
  if (bPositionOnly) {
    stored.width = placement.bounds.width;
    stored.height = placement.bounds.height;
  }
  placement.bounds = settings::KeepOnScreens(stored, CurrentUserInterface().ScreenRects());
  placement.state = get(u"WindowState") == 2 ? WindowState::kMaximized : WindowState::kNormal;
  form.SetPlacement(placement);
  return true;
}

bool LIB::tklSaveColWidths(const std::shared_ptr<HostObject>& oForm,
                           const std::shared_ptr<HostObject>& oListView,
                           std::u16string_view sRegSubKey) {
  const Form& form = Require<Form>(oForm, u"form");
  const ListView& list = Require<ListView>(oListView, u"list view");
  const std::u16string key = ListViewKey(form, list, sRegSubKey);
  bool stored = true;
  for (int32_t column = 0, count = list.ColumnCount(); column < count; ++column) {
    stored = tkrSetValue(HKEY_CURRENT_USER, key, ColumnValue(column),
                         Variant(list.ColumnWidth(column))) &&
             stored;
  }
  return stored;
}

bool LIB::tklLoadColWidths(const std::shared_ptr<HostObject>& oForm,
                           const std::shared_ptr<HostObject>& oListView,
                           std::u16string_view sRegSubKey) {
  const Form& form = Require<Form>(oForm, u"form");
  ListView& list = Require<ListView>(oListView, u"list view");
  const std::u16string key = ListViewKey(form, list, sRegSubKey);
  bool any = false;
  for (int32_t column = 0, count = list.ColumnCount(); column < count; ++column) {
    const int32_t width = tkrGetLong(HKEY_CURRENT_USER, key, ColumnValue(column), kNotStored);
    // A negative width is no width a column had; the column keeps its own.
    if (width == kNotStored || width < 0) continue;
    list.SetColumnWidth(column, width);
    any = true;
  }
  return any;
}

}  // namespace norvik50
