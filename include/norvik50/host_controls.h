// The host's list boxes, combo boxes and tab strips as the list-filling
// members (tklXMLFillList, tklXMLFillComboWithResList, tklXMLFillTabStrip)
// drive them: a few operations each. A host with a toolkit adapts its own
// controls (the Qt adapters come with the dialogs); MemoryList and
// MemoryTabStrip serve hosts without one, tests and the batch protocol.
//
// Thread safety: none; a control belongs to the thread that uses it.
#ifndef NORVIK50_HOST_CONTROLS_H_
#define NORVIK50_HOST_CONTROLS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

// Raised by a tab collection for a key that is already taken.
inline constexpr int32_t kErrKeyNotUnique = 35602;

// A list box or combo box.
class NORVIK50_EXPORT ListControl : public HostObject {
 public:
  ~ListControl() override;
  // Removes every row.
  virtual void Clear() = 0;
  // Appends a row showing `text`.
  virtual void AddItem(std::u16string_view text) = 0;
  // The index of the row added last; -1 when none was added since Clear.
  virtual int32_t NewIndex() const = 0;
  // The 32-bit number stored with row `index` (0 for a new row). Both raise
  // subscript out of range (9) for an index that names no row.
  virtual int32_t ItemData(int32_t index) const = 0;
  virtual void SetItemData(int32_t index, int32_t data) = 0;
};

// The tabs of a tab strip.
class NORVIK50_EXPORT TabCollection {
 public:
  virtual ~TabCollection();
  virtual void Clear() = 0;
  // Adds a tab at 1-based `index` (at the end without one). Raises 35602
  // when `key` is not empty and another tab has it, 9 for a bad index.
  virtual void Add(std::optional<int32_t> index, std::u16string_view key,
                   std::u16string_view caption) = 0;
};

class NORVIK50_EXPORT TabStrip : public HostObject {
 public:
  ~TabStrip() override;
  virtual TabCollection& Tabs() = 0;
};

// A list held in memory.
class NORVIK50_EXPORT MemoryList final : public ListControl {
 public:
  struct Row {
    std::u16string text;
    int32_t item_data = 0;
    bool operator==(const Row&) const = default;
  };
  void Clear() override;
  void AddItem(std::u16string_view text) override;
  int32_t NewIndex() const override { return new_index_; }
  int32_t ItemData(int32_t index) const override;
  void SetItemData(int32_t index, int32_t data) override;
  const std::vector<Row>& rows() const noexcept { return rows_; }

 private:
  std::vector<Row> rows_;
  int32_t new_index_ = -1;
};

// A tab strip held in memory. Keys are compared exactly, as given.
class NORVIK50_EXPORT MemoryTabStrip final : public TabStrip, private TabCollection {
 public:
  struct Tab {
    std::u16string key;
    std::u16string caption;
    bool operator==(const Tab&) const = default;
  };
  TabCollection& Tabs() override { return *this; }
  const std::vector<Tab>& tabs() const noexcept { return tabs_; }

 private:
  void Clear() override {
    tabs_.clear();
    keys_.clear();
  }
  void Add(std::optional<int32_t> index, std::u16string_view key,
           std::u16string_view caption) override;
  std::vector<Tab> tabs_;
  // The non-empty keys of tabs_, so that a strip filled with many tabs
  // checks each new key in constant time.
  std::unordered_set<std::u16string> keys_;
};

}  // namespace norvik50

#endif  // NORVIK50_HOST_CONTROLS_H_
