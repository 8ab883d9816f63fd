// The host's Qt fields as text controls: read back from the widgets,
// selected and toggled by tklSelectField, focused by tklSetFocus, and
// zoomed by tklZoomTextBox, for every kind of source.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <functional>

#include "core/library_state.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/zoom_form.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

// One source field as the tests see it through its widget.
struct Field {
  std::shared_ptr<TextControl> control;
  QWidget* focus = nullptr;            // the widget that has the focus with the field
  std::function<bool()> current;       // items: the item is its view's current one
  std::function<QString()> text;       // what the widget shows
  std::function<QString()> selected;   // the text shown selected, "" for none
  std::function<void(bool)> lock;      // read-only (items: not editable)
  std::function<void(bool)> enable;
  std::function<QString()> tooltip;
};

// A field inside `window` showing "Meier" with the tooltip "Name", beside
// another field that has the focus first.
struct Source {
  const char* type;
  std::function<Field(QWidget& window)> make;
};

template <typename Edit>
Field DocumentField(QWidget& window) {
  auto* edit = new Edit(&window);
  edit->setPlainText("Meier");
  edit->setToolTip("Name");
  return {QtTextControl(edit),
          edit,
          [] { return true; },
          [edit] { return edit->toPlainText(); },
          [edit] { return edit->textCursor().selectedText(); },
          [edit](bool b) { edit->setReadOnly(b); },
          [edit](bool b) { edit->setEnabled(b); },
          [edit] { return edit->toolTip(); }};
}

template <typename Item>
void SetFlag(Item* item, Qt::ItemFlag flag, bool on) {
  item->setFlags(on ? item->flags() | flag : item->flags() & ~flag);
}

std::vector<Source> Sources() {
  return {
      {"TextBox",
       [](QWidget& window) {
         auto* edit = new QLineEdit("Meier", &window);
         edit->setToolTip("Name");
         return Field{QtTextControl(edit),
                      edit,
                      [] { return true; },
                      [edit] { return edit->text(); },
                      [edit] { return edit->selectedText(); },
                      [edit](bool b) { edit->setReadOnly(b); },
                      [edit](bool b) { edit->setEnabled(b); },
                      [edit] { return edit->toolTip(); }};
       }},
      {"TextBox", DocumentField<QPlainTextEdit>},
      {"TextBox", DocumentField<QTextEdit>},
      {"ComboBox",
       [](QWidget& window) {
         auto* combo = new QComboBox(&window);
         combo->setEditable(true);
         combo->addItems({"Schulze", "Meier"});
         combo->setCurrentIndex(1);
         combo->setToolTip("Name");
         return Field{QtTextControl(combo),
                      combo,
                      [] { return true; },
                      [combo] { return combo->currentText(); },
                      [combo] { return combo->lineEdit()->selectedText(); },
                      [combo](bool b) { combo->lineEdit()->setReadOnly(b); },
                      [combo](bool b) { combo->setEnabled(b); },
                      [combo] { return combo->toolTip(); }};
       }},
      {"ListBox",
       [](QWidget& window) {
         auto* list = new QListWidget(&window);
         list->addItems({"Schulze", "Meier"});
         for (int i = 0; i < 2; ++i) SetFlag(list->item(i), Qt::ItemIsEditable, true);
         list->setCurrentRow(1, QItemSelectionModel::NoUpdate);
         list->setToolTip("Name");
         return Field{QtTextControl(list),
                      list,
                      [] { return true; },
                      [list] { return list->currentItem()->text(); },
                      [list] {
                        return list->currentItem()->isSelected() ? list->currentItem()->text()
                                                                 : QString();
                      },
                      [list](bool b) { SetFlag(list->currentItem(), Qt::ItemIsEditable, !b); },
                      [list](bool b) { list->setEnabled(b); },
                      [list] { return list->toolTip(); }};
       }},
      {"ListItem",
       [](QWidget& window) {
         auto* list = new QListWidget(&window);
         list->addItems({"Schulze", "Meier"});
         QListWidgetItem* item = list->item(1);
         SetFlag(item, Qt::ItemIsEditable, true);
         item->setToolTip("Name");
         return Field{QtTextControl(item),
                      list,
                      [list, item] { return list->currentItem() == item; },
                      [item] { return item->text(); },
                      [item] { return item->isSelected() ? item->text() : QString(); },
                      [item](bool b) { SetFlag(item, Qt::ItemIsEditable, !b); },
                      [item](bool b) { SetFlag(item, Qt::ItemIsEnabled, b); },
                      [item] { return item->toolTip(); }};
       }},
      {"Node",
       [](QWidget& window) {
         // A child node in the second column: the tree is walked below the
         // top level, and the column is the one wrapped.
         auto* tree = new QTreeWidget(&window);
         tree->setColumnCount(2);
         auto* parent = new QTreeWidgetItem(tree, QStringList{"Kunden", ""});
         auto* node = new QTreeWidgetItem(parent, QStringList{"K1", "Meier"});
         parent->setExpanded(true);
         SetFlag(node, Qt::ItemIsEditable, true);
         node->setToolTip(1, "Name");
         return Field{QtTextControl(node, 1),
                      tree,
                      [tree, node] { return tree->currentItem() == node; },
                      [node] { return node->text(1); },
                      [node] { return node->isSelected() ? node->text(1) : QString(); },
                      [node](bool b) { SetFlag(node, Qt::ItemIsEditable, !b); },
                      [node](bool b) { SetFlag(node, Qt::ItemIsEnabled, b); },
                      [node] { return node->toolTip(1); }};
       }},
  };
}

// A shown, active window with a first field that has the focus.
class Window {
 public:
  explicit Window(const Source& source) {
    auto* layout = new QVBoxLayout(&window_);
    first_ = new QLineEdit("first", &window_);
    layout->addWidget(first_);
    field_ = source.make(window_);
    layout->addWidget(field_.focus);
  }
  void Show() {
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    first_->setFocus();
  }
  // Makes the window active again, as the window system does when a
  // dialog over it closes.
  void Reactivate() {
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
  }
  Field& field() { return field_; }
  QLineEdit* first() { return first_; }

 private:
  QWidget window_;
  QLineEdit* first_;
  Field field_;
};

bool HasFocus(const QWidget* widget) {
  const QWidget* focused = QApplication::focusWidget();
  return focused && (focused == widget || widget->isAncestorOf(focused));
}

class QtTextControlTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }
  ~QtTextControlTest() override {
    qt::SetShownHook(nullptr);
    SetUserInterface(nullptr);
    SetBaseKey(u"");
  }
  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  ScopedEnv script_{"NORVIK50_DIALOG_SCRIPT", std::nullopt};
  ScopedEnv log_{"NORVIK50_DIALOG_LOG", std::nullopt};
  LIB lib_;
};

TEST_F(QtTextControlTest, EachSourceReadsAndWritesItsWidget) {
  for (const Source& source : Sources()) {
    Window window(source);
    Field& f = window.field();
    SCOPED_TRACE(f.focus->metaObject()->className());
    EXPECT_EQ(QString::fromStdU16String(f.control->TypeName()), source.type);
    EXPECT_EQ(f.control->Text(), u"Meier");
    EXPECT_TRUE(f.control->Enabled());
    EXPECT_FALSE(f.control->Locked());
    EXPECT_EQ(f.control->ToolTipText(), u"Name");
    f.lock(true);
    f.enable(false);
    EXPECT_TRUE(f.control->Locked());
    EXPECT_FALSE(f.control->Enabled());
    f.control->SetText(u"Schmidt \u00e4");
    EXPECT_EQ(f.text(), QString::fromUtf16(u"Schmidt \u00e4"));
    f.control->SetToolTipText(u"Nachname");
    EXPECT_EQ(f.tooltip(), "Nachname");
  }
}

TEST_F(QtTextControlTest, SelectFieldSelectsAndTogglesOnEachSource) {
  for (const Source& source : Sources()) {
    Window window(source);
    window.Show();
    Field& f = window.field();
    SCOPED_TRACE(f.focus->metaObject()->className());
    const auto control = std::static_pointer_cast<HostObject>(f.control);
    lib_.tklSelectField(control);
    EXPECT_EQ(f.selected(), "Meier");
    EXPECT_EQ(f.control->SelLength(), 5);
    lib_.tklSelectField(control, true);
    EXPECT_EQ(f.selected(), "");
    EXPECT_EQ(f.control->SelLength(), 0);
    lib_.tklSelectField(control, true);
    EXPECT_EQ(f.selected(), "Meier");
    // The status panel's text becomes the tooltip.
    QLabel panel("Kundenname");
    lib_.tklSelectField(control, true, QtStatusPanel(&panel));
    EXPECT_EQ(f.tooltip(), "Kundenname");
  }
}

TEST_F(QtTextControlTest, TogglingPutsTheCaretAtTheEndOfAField) {
  // Where the text has a caret, toggling a whole selection leaves it after
  // the last character, and a partial selection grows to the whole text.
  for (const Source& source : Sources()) {
    Window window(source);
    Field& f = window.field();
    if (f.control->TypeName() != u"TextBox" && f.control->TypeName() != u"ComboBox") continue;
    SCOPED_TRACE(f.focus->metaObject()->className());
    f.control->Select(1, 2);
    EXPECT_EQ(f.selected(), "ei");
    EXPECT_EQ(f.control->SelStart(), 1);
    EXPECT_EQ(f.control->SelLength(), 2);
    lib_.tklSelectField(f.control, true);
    EXPECT_EQ(f.selected(), "Meier");
    lib_.tklSelectField(f.control, true);
    EXPECT_EQ(f.control->SelStart(), 5);
    EXPECT_EQ(f.control->SelLength(), 0);
    f.control->Select(7, 3);  // past the end: the caret at the end
    EXPECT_EQ(f.control->SelStart(), 5);
    EXPECT_EQ(f.selected(), "");
  }
}

TEST_F(QtTextControlTest, SetFocusMovesTheFocusToTheField) {
  for (const Source& source : Sources()) {
    Window window(source);
    window.Show();
    Field& f = window.field();
    SCOPED_TRACE(f.focus->metaObject()->className());
    ASSERT_TRUE(HasFocus(window.first()));
    lib_.tklSetFocus(f.control);
    EXPECT_TRUE(HasFocus(f.focus));
    EXPECT_TRUE(f.current());
  }
}

TEST_F(QtTextControlTest, ZoomOnEachSourceWritesTheTextBack) {
  InstallQtDialogs();
  for (const Source& source : Sources()) {
    Window window(source);
    window.Show();
    Field& f = window.field();
    SCOPED_TRACE(f.focus->metaObject()->className());
    QString seen_text, seen_tooltip;
    bool seen_locked = true;
    qt::SetShownHook([&](QDialog& dialog) {
      auto& form = static_cast<qt::ZoomForm&>(dialog);
      seen_text = form.Editor()->toPlainText();
      seen_tooltip = form.Editor()->toolTip();
      seen_locked = form.Editor()->isReadOnly();
      QTest::keyClicks(form.Editor(), "Neu");  // replaces the selected text
      form.findChild<QPushButton*>("cmdOK")->click();
    });
    lib_.tklZoomTextBox(f.control, u"Kunde");
    EXPECT_EQ(seen_text, "Meier");
    EXPECT_EQ(seen_tooltip, "Name");
    EXPECT_FALSE(seen_locked);
    EXPECT_EQ(f.text(), "Neu");
    // The last step: the whole text selected and the focus on the field,
    // not back on the field that had it before the zoom.
    EXPECT_EQ(f.selected(), "Neu");
    window.Reactivate();
    EXPECT_TRUE(HasFocus(f.focus));

    // Cancel leaves the text; a locked field opens a locked editor.
    f.lock(true);
    qt::SetShownHook([&](QDialog& dialog) {
      auto& form = static_cast<qt::ZoomForm&>(dialog);
      seen_locked = form.Editor()->isReadOnly();
      QTest::keyClicks(form.Editor(), "x");
      form.findChild<QPushButton*>("cmdCancel")->click();
    });
    lib_.tklZoomTextBox(f.control);
    EXPECT_TRUE(seen_locked);
    EXPECT_EQ(f.text(), "Neu");
  }
}

TEST_F(QtTextControlTest, AnItemGoneFromItsViewReadsAsEmpty) {
  QListWidget list;
  list.addItems({"a", "b"});
  const auto row = QtTextControl(list.item(1));
  QTreeWidget tree;
  auto* node_item = new QTreeWidgetItem(&tree, QStringList{"n"});
  const auto node = QtTextControl(node_item);
  delete list.takeItem(1);
  delete node_item;
  for (const auto& control : {row, node}) {
    EXPECT_EQ(control->Text(), u"");
    EXPECT_FALSE(control->Enabled());
    control->SetText(u"x");
    control->Select(0, 1);
    control->SetFocus();
    lib_.tklSelectField(control, true);
    EXPECT_EQ(control->SelLength(), 0);
  }
  EXPECT_EQ(list.item(0)->text(), "a");
  // A list box without a current row has no text to give or take.
  QListWidget empty;
  const auto box = QtTextControl(&empty);
  EXPECT_EQ(box->Text(), u"");
  EXPECT_TRUE(box->Locked());
  box->SetText(u"x");
  EXPECT_EQ(empty.count(), 0);
}

TEST_F(QtTextControlTest, AComboWithoutAnEditFieldPicksARow) {
  QComboBox combo;
  combo.addItems({"rot", "gr\u00fcn"});
  const auto control = QtTextControl(&combo);
  EXPECT_TRUE(control->Locked());
  control->SetText(u"gr\u00fcn");
  EXPECT_EQ(combo.currentIndex(), 1);
  control->SetText(u"blau");  // no such row: nothing changes
  EXPECT_EQ(combo.currentIndex(), 1);
  EXPECT_EQ(combo.count(), 2);
  lib_.tklSelectField(control, true);
  EXPECT_EQ(control->SelLength(), 0);
}

}  // namespace
}  // namespace norvik50
