// LIB: the zoom editor for one of the host's text fields.
#include <algorithm>
#include <array>

#include <unicode/uchar.h>

#include "norvik50/error.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "norvik50/registry.h"
#include "norvik50/text_control.h"

namespace norvik50 {
namespace {

// The designed outer size of the editor, in twips.
constexpr int32_t kDesignedWidth = 9000;
constexpr int32_t kDesignedHeight = 5400;

bool IsZoomableType(std::u16string type) {
  static constexpr std::array<std::u16string_view, 7> kTypes = {
      u"TEXTBOX", u"COMBOBOX", u"NODE", u"LISTITEM", u"LISTBOX", u"QSCOMBO", u"DCCOMBO"};
  for (char16_t& c : type) c = static_cast<char16_t>(u_toupper(c));
  return std::find(kTypes.begin(), kTypes.end(), type) != kTypes.end();
}

}  // namespace

void LIB::tklZoomTextBox(const std::shared_ptr<HostObject>& Source, std::u16string_view Description,
                         bool IgnoreAttributes) {
  auto* source = dynamic_cast<TextControl*>(Source.get());
  if (source == nullptr || !IsZoomableType(source->TypeName())) {
    Raise(kErrInvalidCall);
  }
  const std::u16string key = tklRegKey() + u"\\Positions\\Forms\\ZoomWindow";
  ZoomRequest request;
  request.title = Description.empty() ? std::u16string(u"Zoom") : std::u16string(Description);
  request.text = source->Text();
  if (!IgnoreAttributes) {
    request.enabled = source->Enabled();
    request.locked = source->Locked();
  }
  request.tooltip = source->ToolTipText();
  request.width_twips = tkrGetLong(HKEY_CURRENT_USER, key, u"Width", kDesignedWidth);
  request.height_twips = tkrGetLong(HKEY_CURRENT_USER, key, u"Height", kDesignedHeight);
  std::u16string text = request.text;
  CurrentUserInterface().ShowZoom(request, text);
  // Every unload of the window writes its size, however it was closed and
  // also when it is the size it opened with; a window that was never shown
  // was never unloaded and writes nothing.
  if (request.shown) {
    tkrSetValue(HKEY_CURRENT_USER, key, u"Width", Variant(request.width_twips));
    tkrSetValue(HKEY_CURRENT_USER, key, u"Height", Variant(request.height_twips));
  }
  // The text goes back also after Cancel: unchanged, as it came.
  source->SetText(text);
  tklSelectField(Source);
  tklSetFocus(Source);
}

}  // namespace norvik50
