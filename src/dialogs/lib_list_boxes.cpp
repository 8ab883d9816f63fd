// LIB: the helpers on the host's list boxes, option groups, tab strips
// and grids.
#include <limits>

#include "dialogs/list_box_helpers.h"
#include "dialogs/tab_and_grid_helpers.h"
#include "norvik50/error.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"

namespace norvik50 {
namespace {

template <typename Control>
Control& Require(const std::shared_ptr<HostObject>& object, std::u16string_view what) {
  auto* control = dynamic_cast<Control*>(object.get());
  if (control == nullptr) {
    throw Error(kErrInvalidCall, u"The object is no " + std::u16string(what) + u".",
                std::u16string(kErrorSource));
  }
  return *control;
}

}  // namespace

int32_t LIB::tklListBoxData(const std::shared_ptr<HostObject>& oList, int32_t lIndex) {
  return ListBoxData(Require<ListControl>(oList, u"list box"), lIndex);
}

int32_t LIB::tklListBoxItemSum(const std::shared_ptr<HostObject>& oList, bool bAllItems) {
  return ListBoxItemSum(Require<ListControl>(oList, u"list box"), bAllItems);
}

int32_t LIB::tklSelectListBoxItem(const std::shared_ptr<HostObject>& oList, const Variant& vFind,
                                  bool bSelect) {
  return SelectListBoxItem(Require<ListControl>(oList, u"list box"), vFind, bSelect);
}

int16_t LIB::tklGetOptionIndex(const std::shared_ptr<HostObject>& oGroup) {
  const int32_t checked = Require<OptionGroup>(oGroup, u"option group").CheckedIndex();
  // A Qt host may number its buttons with any id; an Integer cannot carry
  // every one of them.
  if (checked > std::numeric_limits<int16_t>::max()) {
    throw Error(kErrOverflow, u"Overflow", std::u16string(kErrorSource));
  }
  return static_cast<int16_t>(checked);
}

int16_t LIB::tklOnTabClick(const std::shared_ptr<HostObject>& oTab,
                           const std::shared_ptr<HostObject>& oFrames) {
  const auto& strip = Require<TabStrip>(oTab, u"tab strip");
  // A frame set has fewer than 32768 frames or it raised 9 above.
  return static_cast<int16_t>(ShowFrameOfTab(strip, Require<TabFrames>(oFrames, u"set of frames")));
}

int32_t LIB::tklResizeGridCol(const std::shared_ptr<HostObject>& oGrid, int16_t iCol,
                              int32_t lMinWidth) {
  return FillGridWithColumn(Require<Grid>(oGrid, u"grid"), iCol, lMinWidth);
}

void LIB::tklAlignText(const std::shared_ptr<HostObject>& oGrid, int16_t iAlignment, int16_t iCol) {
  AlignGridColumn(Require<Grid>(oGrid, u"grid"), iAlignment, iCol);
}

}  // namespace norvik50
