// The host's Qt list boxes, combo boxes, tab bars, tab widgets and button
// groups behind the library's ListControl, TabStrip and OptionGroup.
#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QListWidget>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>

#include "dialogs/qt/qt_containers.h"
#include "norvik50/container.h"
#include "norvik50/error.h"
#include "norvik50/focusable.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

[[noreturn]] void NoSuchRow() {
  throw Error(kErrSubscript, u"Invalid property array index", std::u16string(kErrorSource));
}

// Row bookkeeping both list kinds share: Clear, NewIndex and the range
// check. `Widget` needs clear() and count(); the rows' data goes through
// Data and SetData.
template <typename Widget>
class RowList : public ListControl, public Focusable, public Contained {
 public:
  explicit RowList(Widget* widget) : widget_(widget) {}
  std::shared_ptr<HostObject> Parent() const override { return qt::ContainerOf(widget_.data()); }
  void SetFocus() override {
    if (widget_) widget_->setFocus();
  }
  void Clear() override {
    if (widget_) widget_->clear();
    new_index_ = -1;
  }
  int32_t NewIndex() const override { return new_index_; }
  int32_t ItemData(int32_t index) const override {
    CheckRow(index);
    return Data(index).toInt();
  }
  void SetItemData(int32_t index, int32_t data) override {
    CheckRow(index);
    SetData(index, data);
  }
  int32_t Count() const override { return widget_ ? widget_->count() : 0; }

 protected:
  virtual QVariant Data(int32_t index) const = 0;
  virtual void SetData(int32_t index, int32_t data) = 0;
  void CheckRow(int32_t index) const {
    if (!widget_ || index < 0 || index >= widget_->count()) NoSuchRow();
  }

  QPointer<Widget> widget_;
  int32_t new_index_ = -1;
};

class ListWidgetList final : public RowList<QListWidget> {
 public:
  using RowList::RowList;
  void AddItem(std::u16string_view text) override {
    if (!widget_) return;
    auto* row = new QListWidgetItem(ToQ(text));
    widget_->addItem(row);
    // A sorting list puts the row in its place, not at the end.
    new_index_ = widget_->row(row);
  }

  std::u16string ItemText(int32_t index) const override {
    CheckRow(index);
    return widget_->item(index)->text().toStdU16String();
  }
  bool Selected(int32_t index) const override {
    CheckRow(index);
    const QListWidgetItem* row = widget_->item(index);
    return HasCheckBox(*row) ? row->checkState() == Qt::Checked : row->isSelected();
  }
  void SetSelected(int32_t index, bool selected) override {
    CheckRow(index);
    QListWidgetItem* row = widget_->item(index);
    if (HasCheckBox(*row)) {
      row->setCheckState(selected ? Qt::Checked : Qt::Unchecked);
      return;
    }
    if (selected && !MultiSelect()) {
      // The row becomes the current one too, as a click would make it, so
      // that the host's currentRowChanged handlers run.
      widget_->setCurrentItem(row, QItemSelectionModel::ClearAndSelect);
      return;
    }
    row->setSelected(selected);
  }
  // A list whose rows have check boxes takes any number of them; otherwise
  // its selection mode decides.
  bool MultiSelect() const override {
    if (!widget_) return false;
    if (widget_->count() > 0 && HasCheckBox(*widget_->item(0))) return true;
    const auto mode = widget_->selectionMode();
    return mode == QAbstractItemView::MultiSelection ||
           mode == QAbstractItemView::ExtendedSelection ||
           mode == QAbstractItemView::ContiguousSelection;
  }

 private:
  // A row shows a check box once it has a check state: every row is
  // user-checkable by default, so the flag alone tells nothing.
  static bool HasCheckBox(const QListWidgetItem& row) {
    return row.data(Qt::CheckStateRole).isValid();
  }
  QVariant Data(int32_t index) const override { return widget_->item(index)->data(Qt::UserRole); }
  void SetData(int32_t index, int32_t data) override {
    widget_->item(index)->setData(Qt::UserRole, data);
  }
};

class ComboList final : public RowList<QComboBox> {
 public:
  using RowList::RowList;
  void AddItem(std::u16string_view text) override {
    if (!widget_) return;
    new_index_ = widget_->count();
    widget_->insertItem(new_index_, ToQ(text));
  }

  std::u16string ItemText(int32_t index) const override {
    CheckRow(index);
    return widget_->itemText(index).toStdU16String();
  }
  // A combo box's choice is its current row.
  bool Selected(int32_t index) const override {
    CheckRow(index);
    return widget_->currentIndex() == index;
  }
  void SetSelected(int32_t index, bool selected) override {
    CheckRow(index);
    if (selected) {
      widget_->setCurrentIndex(index);
    } else if (widget_->currentIndex() == index) {
      widget_->setCurrentIndex(-1);
    }
  }
  bool MultiSelect() const override { return false; }

 private:
  QVariant Data(int32_t index) const override { return widget_->itemData(index, Qt::UserRole); }
  void SetData(int32_t index, int32_t data) override {
    widget_->setItemData(index, data, Qt::UserRole);
  }
};

// The tab rules both kinds share: keys unique unless empty, 1-based
// positions up to one past the last tab. Returns the 0-based position.
int CheckNewTab(const QTabBar* bar, std::optional<int32_t> index, const QString& key) {
  const int count = bar ? bar->count() : 0;
  if (!key.isEmpty()) {
    for (int i = 0; i < count; ++i) {
      if (bar->tabData(i).toString() == key) {
        throw Error(kErrKeyNotUnique, u"Key is not unique in collection",
                    std::u16string(kErrorSource));
      }
    }
  }
  if (!index) return count;
  if (*index < 1 || *index > count + 1) {
    throw Error(kErrSubscript, u"Index out of bounds", std::u16string(kErrorSource));
  }
  return *index - 1;
}

class BarTabs final : public TabStrip, public Focusable, public Contained, private TabCollection {
 public:
  explicit BarTabs(QTabBar* bar) : bar_(bar) {}
  std::shared_ptr<HostObject> Parent() const override { return qt::ContainerOf(bar_.data()); }
  TabCollection& Tabs() override { return *this; }
  int32_t SelectedIndex() const override { return bar_ ? bar_->currentIndex() : -1; }
  void SetFocus() override {
    if (bar_) bar_->setFocus();
  }

 private:
  void Clear() override {
    while (bar_ && bar_->count() > 0) bar_->removeTab(0);
  }
  void Add(std::optional<int32_t> index, std::u16string_view key,
           std::u16string_view caption) override {
    const QString k = ToQ(key);
    const int at = CheckNewTab(bar_, index, k);
    if (!bar_) return;
    bar_->insertTab(at, ToQ(caption));
    bar_->setTabData(at, k);
  }

  QPointer<QTabBar> bar_;
};

// Marks the pages this adapter made, so that Clear deletes only those.
constexpr char kOwnPage[] = "norvik50OwnPage";

class WidgetTabs final : public TabStrip,
                         public Focusable,
                         public Contained,
                         private TabCollection {
 public:
  explicit WidgetTabs(QTabWidget* tabs) : tabs_(tabs) {}
  std::shared_ptr<HostObject> Parent() const override { return qt::ContainerOf(tabs_.data()); }
  TabCollection& Tabs() override { return *this; }
  int32_t SelectedIndex() const override { return tabs_ ? tabs_->currentIndex() : -1; }
  void SetFocus() override {
    if (tabs_) tabs_->setFocus();
  }

 private:
  void Clear() override {
    while (tabs_ && tabs_->count() > 0) {
      QWidget* page = tabs_->widget(0);
      tabs_->removeTab(0);
      if (page && page->property(kOwnPage).toBool()) delete page;
    }
  }
  void Add(std::optional<int32_t> index, std::u16string_view key,
           std::u16string_view caption) override {
    const QString k = ToQ(key);
    const int at = CheckNewTab(tabs_ ? tabs_->tabBar() : nullptr, index, k);
    if (!tabs_) return;
    auto* page = new QWidget;
    page->setProperty(kOwnPage, true);
    tabs_->insertTab(at, page, ToQ(caption));
    tabs_->tabBar()->setTabData(at, k);
  }

  QPointer<QTabWidget> tabs_;
};

// Ids a host gave with QButtonGroup::addButton(button, id) are the
// buttons' numbers; a group left to number itself (Qt's automatic ids are
// negative) counts its buttons in the order they were added.
class ButtonGroupOptions final : public OptionGroup {
 public:
  explicit ButtonGroupOptions(QButtonGroup* group) : group_(group) {}
  int32_t Count() const override {
    return group_ ? static_cast<int32_t>(group_->buttons().size()) : 0;
  }
  int32_t CheckedIndex() const override {
    if (!group_) return -1;
    QAbstractButton* checked = group_->checkedButton();
    if (!checked) return -1;
    const int id = group_->id(checked);
    if (id >= 0) return id;
    return static_cast<int32_t>(group_->buttons().indexOf(checked));
  }

 private:
  QPointer<QButtonGroup> group_;
};

}  // namespace

std::shared_ptr<OptionGroup> QtOptionGroup(QButtonGroup* group) {
  return std::make_shared<ButtonGroupOptions>(group);
}
std::shared_ptr<ListControl> QtListControl(QListWidget* list) {
  return std::make_shared<ListWidgetList>(list);
}
std::shared_ptr<ListControl> QtListControl(QComboBox* combo) {
  return std::make_shared<ComboList>(combo);
}
std::shared_ptr<TabStrip> QtTabStrip(QTabBar* bar) { return std::make_shared<BarTabs>(bar); }
std::shared_ptr<TabStrip> QtTabStrip(QTabWidget* tabs) { return std::make_shared<WidgetTabs>(tabs); }

}  // namespace norvik50
