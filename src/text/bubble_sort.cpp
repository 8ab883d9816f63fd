#include "text/bubble_sort.h"

#include <algorithm>
#include <cstdint>
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
  // Most comparisons are settled by the first eight key bytes as one
  // number; only equal prefixes look at the whole keys.
  struct Entry {
    uint64_t prefix;
    std::size_t index;
  };
  std::vector<Entry> order(items.size());
  for (std::size_t k = 0; k < items.size(); ++k) {
    uint64_t prefix = 0;
    for (std::size_t b = 0; b < 8; ++b) {
      const uint8_t byte = b < keys[k].size() ? static_cast<uint8_t>(keys[k][b]) : 0;
      prefix = prefix << 8 | byte;
    }
    order[k] = {prefix, k};
  }
  std::stable_sort(order.begin(), order.end(), [&](const Entry& a, const Entry& b) {
    if (a.prefix != b.prefix) return a.prefix < b.prefix;
    return keys[a.index] < keys[b.index];
  });
  std::vector<Variant> sorted;
  sorted.reserve(items.size());
  for (const Entry& e : order) sorted.push_back(std::move(items[e.index]));
  items = std::move(sorted);
}

}  // namespace norvik50
