// What the tab-strip and grid helpers of LIB do, on the toolkit-free
// control interfaces.
#ifndef NORVIK50_SRC_DIALOGS_TAB_AND_GRID_HELPERS_H_
#define NORVIK50_SRC_DIALOGS_TAB_AND_GRID_HELPERS_H_

#include <cstdint>

#include "norvik50/host_controls.h"

namespace norvik50 {

// Shows the frame of the strip's tab in front and hides every other one;
// with no tab in front every frame is hidden. Answers the frame shown, -1
// for none. Raises 9, with every frame as it was, when the tab in front has
// no frame.
int32_t ShowFrameOfTab(const TabStrip& strip, TabFrames& frames);

// Gives `column` (-1: the last) what the other columns leave of the grid's
// visible width, never less than `min_width`, and answers that width in
// twips. Raises 9 for a column the grid does not have, 5 for a negative
// `min_width`.
int32_t FillGridWithColumn(Grid& grid, int32_t column, int32_t min_width);

// Aligns `column` (-1: every column). Raises 5 for an alignment outside
// 0 ... 2, 9 for a column the grid does not have.
void AlignGridColumn(Grid& grid, int32_t alignment, int32_t column);

}  // namespace norvik50

#endif  // NORVIK50_SRC_DIALOGS_TAB_AND_GRID_HELPERS_H_
