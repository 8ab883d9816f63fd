// The host's Qt list boxes, combo boxes, tab bars and tab widgets behind
// the library's ListControl and TabStrip, for the list-filling members.
#include <QComboBox>
#include <QListWidget>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>

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
class RowList : public ListControl, public Focusable {
 public:
  explicit RowList(Widget* widget) : widget_(widget) {}
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

 private:
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

class BarTabs final : public TabStrip, public Focusable, private TabCollection {
 public:
  explicit BarTabs(QTabBar* bar) : bar_(bar) {}
  TabCollection& Tabs() override { return *this; }
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

class WidgetTabs final : public TabStrip, public Focusable, private TabCollection {
 public:
  explicit WidgetTabs(QTabWidget* tabs) : tabs_(tabs) {}
  TabCollection& Tabs() override { return *this; }
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

}  // namespace

std::shared_ptr<ListControl> QtListControl(QListWidget* list) {
  return std::make_shared<ListWidgetList>(list);
}
std::shared_ptr<ListControl> QtListControl(QComboBox* combo) {
  return std::make_shared<ComboList>(combo);
}
std::shared_ptr<TabStrip> QtTabStrip(QTabBar* bar) { return std::make_shared<BarTabs>(bar); }
std::shared_ptr<TabStrip> QtTabStrip(QTabWidget* tabs) { return std::make_shared<WidgetTabs>(tabs); }

}  // namespace norvik50
