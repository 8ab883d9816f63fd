// LIB: selecting a field's text and giving it the focus, the last step of
// the zoom editor and what hosts call when a field is entered.
#include "norvik50/focusable.h"
#include "norvik50/lib.h"
#include "norvik50/text_control.h"

namespace norvik50 {

void SelectField(TextControl& control, bool toggle) {
  const auto length = static_cast<int32_t>(control.Text().size());
  // "Whole text selected" is judged by the length alone, as the host
  // runtime's controls report it: a selection of the text's length can only
  // start at 0.
  if (toggle && control.SelLength() == length) {
    control.Select(length, 0);
  } else {
    control.Select(0, length);
  }
}

void LIB::tklSelectField(const std::shared_ptr<HostObject>& oControl, bool bChangeSelection,
                         const std::shared_ptr<HostObject>& oStatusPanel) {
  auto* control = dynamic_cast<TextControl*>(oControl.get());
  if (control == nullptr) return;
  // Each step is skipped on its own when the control refuses it: a field
  // whose selection fails still gets the panel's text as its tooltip.
  try {
    SelectField(*control, bChangeSelection);
  } catch (...) {
  }
  try {
    if (const auto* panel = dynamic_cast<const StatusPanel*>(oStatusPanel.get())) {
      control->SetToolTipText(panel->Text());
    }
  } catch (...) {
  }
}

void LIB::tklSetFocus(const std::shared_ptr<HostObject>& oControl) {
  try {
    if (auto* control = dynamic_cast<Focusable*>(oControl.get())) control->SetFocus();
  } catch (...) {
    // A control that cannot take the focus now (hidden, disabled) keeps
    // the caller going.
  }
}

}  // namespace norvik50
