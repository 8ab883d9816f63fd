// The host's list boxes, combo boxes, tab strips and option groups as the
// list-filling members (tklXMLFillList, tklXMLFillComboWithResList,
// tklXMLFillTabStrip) and the control helpers (tklListBoxData,
// tklGetOptionIndex ...) drive them: a few operations each. A host with a
// toolkit adapts its own controls (the Qt adapters come with the dialogs);
// MemoryList, MemoryTabStrip and MemoryOptionGroup serve hosts without one,
// tests and the batch protocol.
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
  // The number of rows.
  virtual int32_t Count() const = 0;
  // The text of row `index`; 9 for an index that names no row.
  virtual std::u16string ItemText(int32_t index) const = 0;
  // Whether row `index` is chosen: checked in a list whose rows have check
  // boxes (a check box is how such a list shows its choice), selected in
  // any other. 9 for an index that names no row.
  virtual bool Selected(int32_t index) const = 0;
  // Chooses or releases row `index`. In a list that takes one choice only
  // (MultiSelect false) choosing a row releases the one chosen before.
  virtual void SetSelected(int32_t index, bool selected) = 0;
  // True when several rows may be chosen at once.
  virtual bool MultiSelect() const = 0;
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
  // The 0-based position of the tab in front (the one clicked last); -1
  // when the strip has no tab in front.
  virtual int32_t SelectedIndex() const = 0;
};

// The frames that carry the controls of a tab strip's tabs, in tab order:
// frame i holds what tab i shows. A host keeps them together in one
// container (see QtTabFrames) so that tklOnTabClick finds them.
class NORVIK50_EXPORT TabFrames : public HostObject {
 public:
  ~TabFrames() override;
  virtual int32_t Count() const = 0;
  // Shows or hides frame `index` (within 0 ... Count() - 1).
  virtual void SetVisible(int32_t index, bool visible) = 0;
};

// Text alignment within a grid's column, numbered as the host runtime
// numbers it.
enum class TextAlignment : int32_t { kLeft = 0, kRight = 1, kCenter = 2 };

// A grid: columns with widths in twips inside a visible area.
class NORVIK50_EXPORT Grid : public HostObject {
 public:
  ~Grid() override;
  virtual int32_t ColumnCount() const = 0;
  // Width of `column` (within 0 ... ColumnCount() - 1), in twips; a hidden
  // column is 0 wide.
  virtual int32_t ColumnWidth(int32_t column) const = 0;
  virtual void SetColumnWidth(int32_t column, int32_t width_twips) = 0;
  // The width of the area where the columns show, in twips.
  virtual int32_t ClientWidth() const = 0;
  // Aligns every cell of `column` and its header.
  virtual void SetColumnAlignment(int32_t column, TextAlignment alignment) = 0;
};

// A list held in memory.
class NORVIK50_EXPORT MemoryList final : public ListControl {
 public:
  struct Row {
    std::u16string text;
    int32_t item_data = 0;
    bool selected = false;
    bool operator==(const Row&) const = default;
  };
  explicit MemoryList(bool multi_select = false) : multi_select_(multi_select) {}
  void Clear() override;
  void AddItem(std::u16string_view text) override;
  int32_t NewIndex() const override { return new_index_; }
  int32_t ItemData(int32_t index) const override;
  void SetItemData(int32_t index, int32_t data) override;
  int32_t Count() const override { return static_cast<int32_t>(rows_.size()); }
  std::u16string ItemText(int32_t index) const override;
  bool Selected(int32_t index) const override;
  void SetSelected(int32_t index, bool selected) override;
  bool MultiSelect() const override { return multi_select_; }
  const std::vector<Row>& rows() const noexcept { return rows_; }

 private:
  const Row& At(int32_t index) const;
  std::vector<Row> rows_;
  int32_t new_index_ = -1;
  bool multi_select_ = false;
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
  int32_t SelectedIndex() const override {
    return selected >= 0 && static_cast<std::size_t>(selected) < tabs_.size() ? selected : -1;
  }
  const std::vector<Tab>& tabs() const noexcept { return tabs_; }
  // The tab in front, as the strip's click left it; SelectedIndex reads a
  // position outside the tabs as none.
  int32_t selected = 0;

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

// Frames held in memory, each with a name for the host's own use.
class NORVIK50_EXPORT MemoryTabFrames final : public TabFrames {
 public:
  struct Frame {
    std::u16string name;
    bool visible = true;
    bool operator==(const Frame&) const = default;
  };
  int32_t Count() const override { return static_cast<int32_t>(frames.size()); }
  void SetVisible(int32_t index, bool visible) override;
  std::vector<Frame> frames;
};

// A grid held in memory.
class NORVIK50_EXPORT MemoryGrid final : public Grid {
 public:
  struct Column {
    int32_t width = 0;
    TextAlignment alignment = TextAlignment::kLeft;
    bool operator==(const Column&) const = default;
  };
  int32_t ColumnCount() const override { return static_cast<int32_t>(columns.size()); }
  int32_t ColumnWidth(int32_t column) const override;
  void SetColumnWidth(int32_t column, int32_t width_twips) override;
  int32_t ClientWidth() const override { return client_width; }
  void SetColumnAlignment(int32_t column, TextAlignment alignment) override;
  std::vector<Column> columns;
  int32_t client_width = 0;
};

// A group of option buttons of which at most one is checked. Buttons are
// numbered from 0 in the group's order (a Qt host may give them ids of its
// own: see QtOptionGroup).
class NORVIK50_EXPORT OptionGroup : public HostObject {
 public:
  ~OptionGroup() override;
  virtual int32_t Count() const = 0;
  // The checked button's number; -1 when none is checked.
  virtual int32_t CheckedIndex() const = 0;
};

// An option group held in memory: its captions and the checked button.
class NORVIK50_EXPORT MemoryOptionGroup final : public OptionGroup {
 public:
  int32_t Count() const override { return static_cast<int32_t>(captions.size()); }
  // `checked` read as the group reads it: a number outside the buttons
  // means none is checked.
  int32_t CheckedIndex() const override { return checked >= 0 && checked < Count() ? checked : -1; }
  std::vector<std::u16string> captions;
  int32_t checked = -1;
};

}  // namespace norvik50

#endif  // NORVIK50_HOST_CONTROLS_H_
