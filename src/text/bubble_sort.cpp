#include "text/bubble_sort.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "norvik50/error.h"
#include "text/collation.h"

namespace norvik50 {

// The member has always been described as bidirectional insertion passes.
// Those passes move an element only past strictly greater or strictly
// smaller neighbours, which makes them a stable sort; every stable sort by
// the same order gives the same array, so a stable merge sort over
// collation keys stands in for them at n log n.
void BubbleSort(SafeArray& list) {
  ToInt16Checked(list.lbound());  // 9 for an unbounded array
  ToInt16Checked(list.ubound());
  std::vector<Variant>& items = list.items();
  std::vector<std::string> keys;
  keys.reserve(items.size());
  for (const Variant& item : items) {
    if (item.is_empty()) {
      keys.push_back(CollationKey(u""));
    } else if (item.is_string()) {
      keys.push_back(CollationKey(item.as_string()));
    } else {
      Raise(kErrTypeMismatch);
    }
  }
  std::vector<std::size_t> order(items.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
  std::vector<Variant> sorted;
  sorted.reserve(items.size());
  for (std::size_t k : order) sorted.push_back(std::move(items[k]));
  items = std::move(sorted);
}

}  // namespace norvik50
