// LIB: the screen's size, the frame the library counts forms with, forms
// kept above other windows, the keys held down and the fonts.
#include <utility>
#include <vector>

#include "norvik50/error.h"
#include "norvik50/form.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"

namespace norvik50 {
namespace {

[[noreturn]] void Refuse(std::u16string description) {
  throw Error(kErrInvalidCall, std::move(description), std::u16string(kErrorSource));
}

Form& RequireForm(const std::shared_ptr<HostObject>& object) {
  auto* form = dynamic_cast<Form*>(object.get());
  if (form == nullptr) Refuse(u"The object is no form.");
  return *form;
}

// The mouse buttons as the runtime numbers them, and their virtual keys.
constexpr std::pair<int32_t, int32_t> kMouseButtons[] = {{1, 0x01}, {2, 0x02}, {4, 0x04}};
constexpr int32_t kAllMouseButtons = 1 | 2 | 4;

}  // namespace

int32_t LIB::tklGetScreenWidth() { return CurrentUserInterface().PrimaryScreen().width; }

int32_t LIB::tklGetScreenHeight() { return CurrentUserInterface().PrimaryScreen().height; }

void LIB::tklGetFrameSize(int32_t& lWidth, int32_t& lHeight) {
  lWidth = 2 * kClassicBorderTwips;
  lHeight = 2 * kClassicBorderTwips + kClassicCaptionTwips;
}

int32_t LIB::tklGetMenuHeight() { return CurrentUserInterface().MenuBarHeight(); }

void LIB::tklGetInternalFormSize(const std::shared_ptr<HostObject>& oForm, int32_t& lWidth,
                                 int32_t& lHeight) {
  const TwipsSize inner = RequireForm(oForm).InnerSize();
  lWidth = inner.width;
  lHeight = inner.height;
}

bool LIB::tklTopMost(const std::shared_ptr<HostObject>& oForm, bool bTopMost) {
  return RequireForm(oForm).SetTopMost(bTopMost);
}

bool LIB::tklOpenTopMost(const std::shared_ptr<HostObject>& oForm) {
  Form& form = RequireForm(oForm);
  // On top before it shows: a window system maps it there at once instead
  // of raising it over the others a moment later.
  const bool on_top = form.SetTopMost(true);
  return form.Show() && on_top;
}

int32_t LIB::tklApplicationTopMost(bool bTopMost) {
  return CurrentUserInterface().SetApplicationTopMost(bTopMost);
}

bool LIB::tklOpenApplicationTopMost(const std::shared_ptr<HostObject>& oForm) {
  if (!tklOpenTopMost(oForm)) return false;
  CurrentUserInterface().SetApplicationTopMost(true);
  return true;
}

bool LIB::tklRoundWindow(const std::shared_ptr<HostObject>& oForm, int32_t lRadius) {
  Form& form = RequireForm(oForm);
  if (lRadius < 0) Refuse(u"A corner radius is 0 or more twips.");
  return form.SetCornerRadius(lRadius);
}

bool LIB::tklWindowShadow(const std::shared_ptr<HostObject>& oForm, bool bShadow) {
  return RequireForm(oForm).SetShadow(bShadow);
}

bool LIB::tklIsKeyDown(int32_t lVirtualKey) {
  if (lVirtualKey < 1 || lVirtualKey > 254) {
    Refuse(u"A virtual-key code is a number from 1 to 254.");
  }
  return CurrentUserInterface().IsKeyDown(lVirtualKey);
}

bool LIB::tklIsMouseButtonDown(int32_t lButton) {
  if (lButton <= 0 || (lButton & ~kAllMouseButtons) != 0) {
    Refuse(u"The mouse button is 1 (left), 2 (right), 4 (middle) or a sum of them.");
  }
  for (const auto& [button, virtual_key] : kMouseButtons) {
    if ((lButton & button) != 0 && CurrentUserInterface().IsKeyDown(virtual_key)) return true;
  }
  return false;
}

SafeArray LIB::tklGetFontList() {
  std::vector<Variant> families;
  for (std::u16string& family : CurrentUserInterface().FontFamilies()) {
    families.emplace_back(std::move(family));
  }
  return SafeArray(0, std::move(families), VarType::kString);
}

}  // namespace norvik50
