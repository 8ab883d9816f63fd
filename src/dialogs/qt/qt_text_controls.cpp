// The host's Qt text fields, list rows and tree nodes behind the library's
// TextControl, and a status bar label behind StatusPanel.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTextEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <algorithm>

#include "dialogs/qt/qt_containers.h"
#include "norvik50/container.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// What every widget adapter shares; `Field` is the widget type.
template <typename Field>
class FieldControl : public TextControl, public Contained {
 public:
  explicit FieldControl(Field* field) : field_(field) {}
  std::shared_ptr<HostObject> Parent() const override { return qt::ContainerOf(field_.data()); }
  std::u16string TypeName() const override { return u"TextBox"; }
  bool Enabled() const override { return field_ && field_->isEnabled(); }
  std::u16string ToolTipText() const override {
    return field_ ? field_->toolTip().toStdU16String() : std::u16string();
  }
  void SetToolTipText(std::u16string_view tip) override {
    if (field_) field_->setToolTip(ToQ(tip));
  }
  void SetFocus() override {
    if (field_) field_->setFocus();
  }

 protected:
  QPointer<Field> field_;
};

// The selection of a one-line editor (a QLineEdit, or a combo box's).
int32_t LineSelStart(const QLineEdit* edit) {
  if (!edit) return 0;
  return edit->hasSelectedText() ? edit->selectionStart() : edit->cursorPosition();
}
int32_t LineSelLength(const QLineEdit* edit) {
  return edit ? static_cast<int32_t>(edit->selectedText().size()) : 0;
}
void LineSelect(QLineEdit* edit, int32_t start, int32_t length) {
  if (!edit) return;
  // QLineEdit refuses positions outside the text with a warning; they mean
  // its end.
  const auto size = static_cast<int32_t>(edit->text().size());
  start = std::clamp(start, 0, size);
  length = std::clamp(length, 0, size - start);
  if (length > 0) {
    edit->setSelection(start, length);
  } else {
    edit->setCursorPosition(start);
  }
}

class LineEditControl final : public FieldControl<QLineEdit> {
 public:
  using FieldControl::FieldControl;
  bool Locked() const override { return field_ && field_->isReadOnly(); }
  std::u16string Text() const override {
    return field_ ? field_->text().toStdU16String() : std::u16string();
  }
  void SetText(std::u16string_view text) override {
    if (field_) field_->setText(ToQ(text));
  }
  int32_t SelStart() const override { return LineSelStart(field_); }
  int32_t SelLength() const override { return LineSelLength(field_); }
  void Select(int32_t start, int32_t length) override { LineSelect(field_, start, length); }
};

// QPlainTextEdit and QTextEdit select through their text cursor.
template <typename Field>
class DocumentControl final : public FieldControl<Field> {
 public:
  using FieldControl<Field>::FieldControl;
  bool Locked() const override { return this->field_ && this->field_->isReadOnly(); }
  std::u16string Text() const override {
    return this->field_ ? this->field_->toPlainText().toStdU16String() : std::u16string();
  }
  void SetText(std::u16string_view text) override {
    if (this->field_) this->field_->setPlainText(ToQ(text));
  }
  int32_t SelStart() const override {
    return this->field_ ? this->field_->textCursor().selectionStart() : 0;
  }
  int32_t SelLength() const override {
    if (!this->field_) return 0;
    const QTextCursor cursor = this->field_->textCursor();
    return cursor.selectionEnd() - cursor.selectionStart();
  }
  void Select(int32_t start, int32_t length) override {
    if (!this->field_) return;
    QTextCursor cursor = this->field_->textCursor();
    // Positions past the end would only warn; they mean the end.
    const int end = this->field_->document()->characterCount() - 1;
    start = std::clamp(start, 0, end);
    cursor.setPosition(start);
    cursor.setPosition(std::clamp(start + std::max(length, 0), start, end),
                       QTextCursor::KeepAnchor);
    this->field_->setTextCursor(cursor);
  }
};

class ComboControl final : public FieldControl<QComboBox> {
 public:
  using FieldControl::FieldControl;
  std::u16string TypeName() const override { return u"ComboBox"; }
  // A combo box without an edit field shows a row's text the user cannot
  // change: that is what a locked field is.
  bool Locked() const override {
    return field_ && (!field_->isEditable() || field_->lineEdit()->isReadOnly());
  }
  std::u16string Text() const override {
    return field_ ? field_->currentText().toStdU16String() : std::u16string();
  }
  // Editable: the edit text; otherwise the row with that text becomes
  // current, and a text no row has changes nothing.
  void SetText(std::u16string_view text) override {
    if (field_) field_->setCurrentText(ToQ(text));
  }
  int32_t SelStart() const override { return LineSelStart(Edit()); }
  int32_t SelLength() const override { return LineSelLength(Edit()); }
  void Select(int32_t start, int32_t length) override { LineSelect(Edit(), start, length); }

 private:
  QLineEdit* Edit() const { return field_ ? field_->lineEdit() : nullptr; }
};

// Reading and writing one column of a list row or a tree node alike.
struct ListRow {
  using Item = QListWidgetItem;
  using View = QListWidget;
  static constexpr std::u16string_view kType = u"ListItem";
  static View* ViewOf(const Item* item) { return item->listWidget(); }
  // Whether `item` still is a row of `view`. The pointer is only compared,
  // never followed: the row may have been deleted since it was wrapped.
  static bool Holds(const View& view, const Item* item) {
    for (int row = 0; row < view.count(); ++row) {
      if (view.item(row) == item) return true;
    }
    return false;
  }
  static QString Text(const Item& item, int) { return item.text(); }
  static void SetText(Item& item, int, const QString& text) { item.setText(text); }
  static QString ToolTip(const Item& item, int) { return item.toolTip(); }
  static void SetToolTip(Item& item, int, const QString& tip) { item.setToolTip(tip); }
};

struct TreeNode {
  using Item = QTreeWidgetItem;
  using View = QTreeWidget;
  static constexpr std::u16string_view kType = u"Node";
  static View* ViewOf(const Item* item) { return item->treeWidget(); }
  static bool Holds(const View& view, const Item* item) {
    for (QTreeWidgetItemIterator it(const_cast<View*>(&view)); *it; ++it) {
      if (*it == item) return true;
    }
    return false;
  }
  static QString Text(const Item& item, int column) { return item.text(column); }
  static void SetText(Item& item, int column, const QString& text) { item.setText(column, text); }
  static QString ToolTip(const Item& item, int column) { return item.toolTip(column); }
  static void SetToolTip(Item& item, int column, const QString& tip) {
    item.setToolTip(column, tip);
  }
};

// Selecting an item in its view; a view that allows one selected item at a
// time loses its other selection, as a click would do.
template <typename Kind>
void SelectItem(typename Kind::View& view, typename Kind::Item& item, bool selected) {
  if (selected && view.selectionMode() == QAbstractItemView::SingleSelection) {
    view.clearSelection();
  }
  item.setSelected(selected);
}

// The selection an item's text has: all of it when the item is selected.
template <typename Kind>
int32_t ItemSelLength(const typename Kind::Item* item, int column) {
  return item && item->isSelected() ? static_cast<int32_t>(Kind::Text(*item, column).size()) : 0;
}

template <typename Kind>
class ItemControl final : public TextControl, public Contained {
 public:
  using Item = typename Kind::Item;
  // An item sits where its view sits.
  std::shared_ptr<HostObject> Parent() const override { return qt::ContainerOf(view_.data()); }
  ItemControl(Item* item, int column)
      : view_(item ? Kind::ViewOf(item) : nullptr), item_(item), column_(column) {}
  std::u16string TypeName() const override { return std::u16string(Kind::kType); }
  std::u16string Text() const override {
    const Item* item = Live();
    return item ? Kind::Text(*item, column_).toStdU16String() : std::u16string();
  }
  void SetText(std::u16string_view text) override {
    if (Item* item = Live()) Kind::SetText(*item, column_, ToQ(text));
  }
  bool Enabled() const override {
    const Item* item = Live();
    return item && (item->flags() & Qt::ItemIsEnabled);
  }
  bool Locked() const override {
    const Item* item = Live();
    return item && !(item->flags() & Qt::ItemIsEditable);
  }
  std::u16string ToolTipText() const override {
    const Item* item = Live();
    return item ? Kind::ToolTip(*item, column_).toStdU16String() : std::u16string();
  }
  void SetToolTipText(std::u16string_view tip) override {
    if (Item* item = Live()) Kind::SetToolTip(*item, column_, ToQ(tip));
  }
  int32_t SelStart() const override { return 0; }
  int32_t SelLength() const override { return ItemSelLength<Kind>(Live(), column_); }
  void Select(int32_t /*start*/, int32_t length) override {
    if (Item* item = Live()) SelectItem<Kind>(*view_, *item, length > 0);
  }
  void SetFocus() override {
    if (Item* item = Live()) {
      view_->setCurrentItem(item);
      view_->setFocus();
    }
  }

 private:
  Item* Live() const { return view_ && Kind::Holds(*view_, item_) ? item_ : nullptr; }

  QPointer<typename Kind::View> view_;
  Item* item_;
  int column_;
};

// A list box stands for its current row.
class ListBoxControl final : public FieldControl<QListWidget> {
 public:
  using FieldControl::FieldControl;
  std::u16string TypeName() const override { return u"ListBox"; }
  bool Locked() const override {
    const QListWidgetItem* row = Current();
    return !row || !(row->flags() & Qt::ItemIsEditable);
  }
  std::u16string Text() const override {
    const QListWidgetItem* row = Current();
    return row ? row->text().toStdU16String() : std::u16string();
  }
  void SetText(std::u16string_view text) override {
    if (QListWidgetItem* row = Current()) row->setText(ToQ(text));
  }
  int32_t SelStart() const override { return 0; }
  int32_t SelLength() const override { return ItemSelLength<ListRow>(Current(), 0); }
  void Select(int32_t /*start*/, int32_t length) override {
    if (QListWidgetItem* row = Current()) SelectItem<ListRow>(*field_, *row, length > 0);
  }

 private:
  QListWidgetItem* Current() const { return field_ ? field_->currentItem() : nullptr; }
};

class LabelPanel final : public StatusPanel {
 public:
  explicit LabelPanel(QLabel* label) : label_(label) {}
  std::u16string Text() const override {
    return label_ ? label_->text().toStdU16String() : std::u16string();
  }

 private:
  QPointer<QLabel> label_;
};

}  // namespace

std::shared_ptr<TextControl> QtTextControl(QLineEdit* field) {
  return std::make_shared<LineEditControl>(field);
}
std::shared_ptr<TextControl> QtTextControl(QPlainTextEdit* field) {
  return std::make_shared<DocumentControl<QPlainTextEdit>>(field);
}
std::shared_ptr<TextControl> QtTextControl(QTextEdit* field) {
  return std::make_shared<DocumentControl<QTextEdit>>(field);
}
std::shared_ptr<TextControl> QtTextControl(QComboBox* combo) {
  return std::make_shared<ComboControl>(combo);
}
std::shared_ptr<TextControl> QtTextControl(QListWidget* list) {
  return std::make_shared<ListBoxControl>(list);
}
std::shared_ptr<TextControl> QtTextControl(QListWidgetItem* item) {
  return std::make_shared<ItemControl<ListRow>>(item, 0);
}
std::shared_ptr<TextControl> QtTextControl(QTreeWidgetItem* node, int column) {
  return std::make_shared<ItemControl<TreeNode>>(node, column);
}
std::shared_ptr<StatusPanel> QtStatusPanel(QLabel* label) {
  return std::make_shared<LabelPanel>(label);
}

}  // namespace norvik50
