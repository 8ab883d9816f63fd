#include "norvik50/form.h"

#include <algorithm>

namespace norvik50 {
namespace {

// Sets `text` from `lookup` when it names a resource the lookup knows.
bool Fill(const CaptionLookup& lookup, CaptionPlace place, std::u16string_view res_id,
          std::u16string& text) {
  if (res_id.empty()) return false;
  const std::optional<std::u16string_view> found = lookup(place, res_id);
  if (!found) return false;
  text = *found;
  return true;
}

}  // namespace

Form::~Form() = default;

bool Form::SetTopMost(bool) { return false; }

bool Form::Show() { return false; }

bool Form::SetCornerRadius(int32_t) { return false; }

bool Form::SetShadow(bool) { return false; }

bool Form::IsOpen() const { return false; }

TwipsSize Form::InnerSize() const { return InnerSizeOf(Placement().bounds, false); }

TwipsSize InnerSizeOf(const TwipsRect& outer, bool menu_bar) {
  // Wide arithmetic: a placement from a batch may hold any Long.
  const int64_t width = int64_t{outer.width} - 2 * kClassicBorderTwips;
  const int64_t height = int64_t{outer.height} - 2 * kClassicBorderTwips - kClassicCaptionTwips -
                         (menu_bar ? kClassicMenuBarTwips : 0);
  return {static_cast<int32_t>(std::max<int64_t>(width, 0)),
          static_cast<int32_t>(std::max<int64_t>(height, 0))};
}

int32_t MemoryForm::FillCaptions(const CaptionLookup& lookup) {
  int32_t set = Fill(lookup, CaptionPlace::kTitle, res_id, caption) ? 1 : 0;
  for (Control& control : controls) {
    set += Fill(lookup, CaptionPlace::kCaption, control.res_id, control.caption) ? 1 : 0;
    set += Fill(lookup, CaptionPlace::kToolTip, control.tooltip_res_id, control.tooltip) ? 1 : 0;
  }
  for (const auto& list : list_views) {
    if (!list) continue;
    for (MemoryListView::Column& column : list->columns) {
      set += Fill(lookup, CaptionPlace::kColumnHeader, column.header_res_id, column.header) ? 1 : 0;
    }
  }
  return set;
}

}  // namespace norvik50
