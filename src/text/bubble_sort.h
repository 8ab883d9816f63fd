// Sorting a String array in place, case-insensitively in the current
// locale, keeping equal elements in their order.
#ifndef NORVIK50_SRC_TEXT_BUBBLE_SORT_H_
#define NORVIK50_SRC_TEXT_BUBBLE_SORT_H_

#include "norvik50/variant.h"

namespace norvik50 {

// Sorts the elements of `list` between its bounds ascending; elements that
// compare equal («abc», «ABC») keep their relative order. Empty elements
// count as "". On failure the array is unchanged.
// Raises 9 for an unbounded array, 6 for a bound outside -32768..32767,
// 13 for an element that is no String.
void BubbleSort(SafeArray& list);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_BUBBLE_SORT_H_
