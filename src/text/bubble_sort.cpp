#include "text/bubble_sort.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
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
  // All keys in one buffer; entry k's key is keys[begin[k], begin[k + 1]).
  std::string keys;
  std::vector<std::size_t> begin;
  begin.reserve(items.size() + 1);
  for (const Variant& item : items) {
    begin.push_back(keys.size());
    if (item.is_string()) {
      AppendCollationKey(item.as_string(), keys);
    } else if (item.is_empty()) {
      AppendCollationKey(u"", keys);
    } else {
      Raise(kErrTypeMismatch);
    }
  }
  begin.push_back(keys.size());
  const auto key = [&](std::size_t k) {
    return std::string_view(keys).substr(begin[k], begin[k + 1] - begin[k]);
  };
  // Most comparisons are settled by the first eight key bytes as one
  // number; only equal prefixes look at the whole keys.
  struct Entry {
    uint64_t prefix;
    std::size_t index;
  };
  std::vector<Entry> order(items.size());
  for (std::size_t k = 0; k < items.size(); ++k) {
    const std::string_view bytes = key(k);
    uint64_t prefix = 0;
    for (std::size_t b = 0; b < 8; ++b) {
      prefix = prefix << 8 | (b < bytes.size() ? static_cast<uint8_t>(bytes[b]) : 0);
    }
    order[k] = {prefix, k};
  }
  std::stable_sort(order.begin(), order.end(), [&](const Entry& a, const Entry& b) {
    if (a.prefix != b.prefix) return a.prefix < b.prefix;
    return key(a.index) < key(b.index);
  });
  std::vector<Variant> sorted;
  sorted.reserve(items.size());
  for (const Entry& e : order) sorted.push_back(std::move(items[e.index]));
  items = std::move(sorted);
}

}  // namespace norvik50
