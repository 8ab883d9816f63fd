#include "dialogs/tab_and_grid_helpers.h"

#include <algorithm>
#include <limits>

#include "norvik50/error.h"

namespace norvik50 {
namespace {

[[noreturn]] void Refuse(int32_t number, std::u16string description) {
  throw Error(number, std::move(description), std::u16string(kErrorSource));
}

int32_t CheckedColumn(const Grid& grid, int32_t column) {
  const int32_t count = grid.ColumnCount();
  if (column == -1 && count > 0) return count - 1;
  if (column < 0 || column >= count) Refuse(kErrSubscript, u"The grid has no such column.");
  return column;
}

}  // namespace

int32_t ShowFrameOfTab(const TabStrip& strip, TabFrames& frames) {
  const int32_t shown = strip.SelectedIndex();
  const int32_t count = frames.Count();
  if (shown >= count) Refuse(kErrSubscript, u"The tab in front has no frame.");
  // The others go first, so that two frames never show at once: a frame
  // drawn over another would flash its controls.
  for (int32_t i = 0; i < count; ++i) {
    if (i != shown) frames.SetVisible(i, false);
  }
  if (shown >= 0) frames.SetVisible(shown, true);
  return shown;
}

int32_t FillGridWithColumn(Grid& grid, int32_t column, int32_t min_width) {
  if (min_width < 0) Refuse(kErrInvalidCall, u"A column cannot be narrower than nothing.");
  column = CheckedColumn(grid, column);
  int64_t rest = grid.ClientWidth();
  const int32_t count = grid.ColumnCount();
  for (int32_t i = 0; i < count; ++i) {
    if (i != column) rest -= grid.ColumnWidth(i);
  }
  const auto width = static_cast<int32_t>(
      std::clamp<int64_t>(rest, min_width, std::numeric_limits<int32_t>::max()));
  grid.SetColumnWidth(column, width);
  return width;
}

void AlignGridColumn(Grid& grid, int32_t alignment, int32_t column) {
  if (alignment < 0 || alignment > 2) {
    Refuse(kErrInvalidCall, u"The alignment is 0 (left), 1 (right) or 2 (centre).");
  }
  const auto align = static_cast<TextAlignment>(alignment);
  if (column != -1) {
    grid.SetColumnAlignment(CheckedColumn(grid, column), align);
    return;
  }
  const int32_t count = grid.ColumnCount();
  for (int32_t i = 0; i < count; ++i) grid.SetColumnAlignment(i, align);
}

}  // namespace norvik50
