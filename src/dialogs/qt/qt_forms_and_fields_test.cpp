// Open forms, the containers of real widgets, F2 in a real field and a
// button holding the mouse, on the offscreen platform.
#include <gtest/gtest.h>

#include <QDir>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/scripted_dialogs_for_tests.h"
#include "dialogs/qt/zoom_form.h"
#include "norvik50/container.h"
#include "norvik50/mouse_pointer.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50::qt {
namespace {

using testing::QtMembersTest;

std::u16string NameOf(const std::shared_ptr<HostObject>& object) {
  if (const auto* form = dynamic_cast<const Form*>(object.get())) return form->Name();
  if (const auto* c = dynamic_cast<const ControlContainer*>(object.get())) {
    return c->ContainerName() + u":" + c->ContainerType();
  }
  return object ? u"?" : u"Nothing";
}

// ---- WindowsKeyCode ----------------------------------------------------

TEST(WindowsKeyCodeTest, KeyPressesGiveTheCodesAndShiftStateAHandlerKnows) {
  struct Case {
    int key;
    Qt::KeyboardModifiers modifiers;
    int16_t code;
    int16_t shift;
  };
  const std::vector<Case> cases = {
      {Qt::Key_F2, Qt::NoModifier, 113, 0},
      {Qt::Key_F2, Qt::ShiftModifier, 113, 1},
      {Qt::Key_F2, Qt::ControlModifier | Qt::AltModifier, 113, 6},
      {Qt::Key_A, Qt::ShiftModifier, 65, 1},  // letters are upper case codes
      {Qt::Key_7, Qt::NoModifier, 55, 0},
      {Qt::Key_7, Qt::KeypadModifier, 0x67, 0},  // the keypad's own code
      {Qt::Key_Enter, Qt::KeypadModifier, 13, 0},
      {Qt::Key_Return, Qt::NoModifier, 13, 0},
      {Qt::Key_Escape, Qt::NoModifier, 27, 0},
      {Qt::Key_Backtab, Qt::ShiftModifier, 9, 1},
      // Shift itself: 0x10, not 0xA0, and held once it is down (Qt's
      // event carries the state from before the press).
      {Qt::Key_Shift, Qt::NoModifier, 16, 1},
      {Qt::Key_Egrave, Qt::NoModifier, 0, 0},  // no fixed key on Windows
  };
  for (const Case& c : cases) {
    const QKeyEvent event(QEvent::KeyPress, c.key, c.modifiers);
    int16_t shift = -1;
    EXPECT_EQ(WindowsKeyCode(event, &shift), c.code) << c.key;
    EXPECT_EQ(shift, c.shift) << c.key;
  }
}

// ---- tklIsFormOpen -----------------------------------------------------

class OpenFormsTest : public QtMembersTest {
 protected:
  OpenFormsTest() : QtMembersTest("de-DE") {}
  static void SetUpTestSuite() { EnsureApplication(); }
  bool Open(const char16_t* name) { return lib_.tklIsFormOpen(Variant(name)); }
};

TEST_F(OpenFormsTest, AShownWindowIsOpenUntilItIsClosed) {
  QWidget customer;
  customer.setObjectName("frmCustomer");
  EXPECT_FALSE(Open(u"frmCustomer"));  // made, not shown
  customer.show();
  EXPECT_TRUE(Open(u"FRMCUSTOMER"));
  EXPECT_TRUE(QtForm(&customer)->IsOpen());
  customer.setWindowState(Qt::WindowMinimized);
  EXPECT_TRUE(Open(u"frmCustomer"));  // minimised is still open
  customer.close();                   // Qt only hides it
  EXPECT_FALSE(Open(u"frmCustomer"));
  EXPECT_FALSE(QtForm(&customer)->IsOpen());
}

TEST_F(OpenFormsTest, AWindowWithoutANameGoesByItsClassAndPopupsAreNoForms) {
  QPushButton button("x");  // a widget without a parent is a window
  button.show();
  EXPECT_TRUE(Open(u"QPushButton"));
  QMenu menu;
  menu.setObjectName("mnuContext");
  menu.addAction("Copy");
  menu.popup(QPoint(10, 10));
  ASSERT_TRUE(menu.isVisible());
  EXPECT_FALSE(Open(u"mnuContext"));
  menu.hide();
  // A child widget is part of its form, not a form.
  QWidget form;
  form.setObjectName("frmOrder");
  auto* field = new QLineEdit(&form);
  field->setObjectName("txtOrder");
  form.show();
  EXPECT_TRUE(Open(u"frmOrder"));
  EXPECT_FALSE(Open(u"txtOrder"));
}

TEST_F(OpenFormsTest, AFormDestroyedIsNoLongerOpen) {
  auto* window = new QWidget;
  window->setObjectName("frmGone");
  window->show();
  const std::shared_ptr<Form> form = QtForm(window);
  EXPECT_TRUE(form->IsOpen());
  delete window;
  EXPECT_FALSE(form->IsOpen());
  EXPECT_FALSE(Open(u"frmGone"));
  EXPECT_FALSE(lib_.tklIsFormOpen(Variant(std::shared_ptr<HostObject>(form))));
}

// ---- tklGetContainer ---------------------------------------------------

// frmCustomer: a tab widget whose page tabAddress holds the group box
// fraAddress, inside it a plain widget that only lays out txtStreet; the
// frame fraNotes with a list, a table and a tree; a scroll area with
// txtRemark; a stack whose page pagTwo holds txtTwo.
class ContainersTest : public QtMembersTest {
 protected:
  ContainersTest() : QtMembersTest("de-DE") {
    form_.setObjectName("frmCustomer");
    auto* layout = new QVBoxLayout(&form_);
    auto* tabs = new QTabWidget;
    tabs->setObjectName("tabMain");
    layout->addWidget(tabs);
    auto* page = new QWidget;
    page->setObjectName("tabAddress");
    tabs->addTab(page, "Adresse");
    auto* group = new QGroupBox("Anschrift", page);
    group->setObjectName("fraAddress");
    auto* row = new QWidget(group);
    street_ = new QLineEdit(row);
    street_->setObjectName("txtStreet");

    auto* notes = new QFrame;
    notes->setObjectName("fraNotes");
    layout->addWidget(notes);
    list_ = new QListWidget(notes);
    table_ = new QTableWidget(2, 2, notes);
    tree_ = new QTreeWidget(notes);

    auto* scroll = new QScrollArea;
    layout->addWidget(scroll);
    auto* inside = new QWidget;
    remark_ = new QLineEdit(inside);
    scroll->setWidget(inside);

    auto* stack = new QStackedWidget;
    layout->addWidget(stack);
    stack->addWidget(new QWidget);
    auto* two = new QWidget;
    two->setObjectName("pagTwo");
    stack->addWidget(two);
    stack_field_ = new QPlainTextEdit(two);
  }
  static void SetUpTestSuite() { EnsureApplication(); }

  QWidget form_;
  QLineEdit* street_;
  QListWidget* list_;
  QTableWidget* table_;
  QTreeWidget* tree_;
  QLineEdit* remark_;
  QPlainTextEdit* stack_field_;
};

TEST_F(ContainersTest, TheChainRunsThroughFramesAndPagesToTheForm) {
  const auto street = QtTextControl(street_);
  const std::vector<std::pair<std::u16string, std::u16string>> cases = {
      {u"", u"fraAddress:Frame"},           // the layout-only widget is passed over
      {u"Frame", u"fraAddress:Frame"},      // a group box is a frame
      {u"tabpage", u"tabAddress:TabPage"},  // a tab widget's page, without case
      {u"Form", u"frmCustomer"},            // the window, as a Form
      {u"FRACUSTOMER", u"Nothing"},         // no container of that name
      {u"tabMain", u"Nothing"},             // the tab widget itself holds pages, not fields
  };
  for (const auto& [kind, expected] : cases) {
    EXPECT_EQ(NameOf(lib_.tklGetContainer(street, kind)), expected)
        << std::string(kind.begin(), kind.end());
  }
  // The form at the end of the chain is the form of tklSaveWindowPos.
  EXPECT_NE(dynamic_cast<Form*>(lib_.tklGetContainer(street, u"Form").get()), nullptr);
}

TEST_F(ContainersTest, EveryKindOfControlKnowsItsContainer) {
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtListControl(list_))), u"fraNotes:Frame");
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtTextControl(list_))), u"fraNotes:Frame");
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtGrid(table_))), u"fraNotes:Frame");
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtListView(tree_))), u"fraNotes:Frame");
  auto* item = new QTreeWidgetItem(tree_, {"Zeile"});
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtTextControl(item))), u"fraNotes:Frame");
  // A scroll area's inside is no container: the form holds the field.
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtTextControl(remark_))), u"frmCustomer");
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtTextControl(stack_field_))), u"pagTwo:Page");
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtTabStrip(form_.findChild<QTabWidget*>()))),
            u"frmCustomer");
  // Any other widget, through its widget adapter.
  auto* save = new QPushButton("Speichern", form_.findChild<QGroupBox*>());
  EXPECT_EQ(NameOf(lib_.tklGetContainer(QtMousePointer(save), u"TabPage")), u"tabAddress:TabPage");
  // A container is placed in its turn.
  const auto frame = lib_.tklGetContainer(QtTextControl(street_));
  EXPECT_EQ(NameOf(lib_.tklGetContainer(frame)), u"tabAddress:TabPage");
  EXPECT_TRUE(lib_.tklIsControl(Variant(frame)));
}

TEST_F(ContainersTest, AWindowAndAWidgetThatIsGoneHaveNone) {
  QLineEdit alone;
  EXPECT_EQ(lib_.tklGetContainer(QtTextControl(&alone)), nullptr);
  const auto street = QtTextControl(street_);
  const auto frame = lib_.tklGetContainer(street);
  delete street_;
  EXPECT_EQ(lib_.tklGetContainer(street), nullptr);
  EXPECT_EQ(NameOf(frame), u"fraAddress:Frame");  // the frame is still there
}

// ---- tklCheckF2Key -----------------------------------------------------

// A host's field whose KeyDown handler hands every key to tklCheckF2Key,
// as a ported form does; a key it handled goes no further.
class F2Field final : public QObject {
 public:
  F2Field(LIB& lib, QLineEdit& field) : lib_(lib), field_(field) { field.installEventFilter(this); }
  int handled = 0;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != &field_ || event->type() != QEvent::KeyPress) return false;
    int16_t shift = 0;
    int16_t code = WindowsKeyCode(static_cast<QKeyEvent&>(*event), &shift);
    if (!lib_.tklCheckF2Key(QtTextControl(&field_), code, shift, u"Straße")) return false;
    EXPECT_EQ(code, 0);
    ++handled;
    return true;
  }

 private:
  LIB& lib_;
  QLineEdit& field_;
};

class CheckF2KeyTest : public QtMembersTest {
 protected:
  CheckF2KeyTest() : QtMembersTest("de-DE") {
    form_.setObjectName("frmCustomer");
    field_ = new QLineEdit(&form_);
    field_->setText("Hauptstr. 1");
    field_->setToolTip("Straße und Hausnummer");
    form_.resize(300, 60);
    form_.show();
    field_->setFocus();
    f2_ = std::make_unique<F2Field>(lib_, *field_);
  }
  static void SetUpTestSuite() { EnsureApplication(); }

  QWidget form_;
  QLineEdit* field_;
  std::unique_ptr<F2Field> f2_;
};

TEST_F(CheckF2KeyTest, F2OpensTheZoomAndTheFieldGetsTheConfirmedText) {
  dialogs_.Script(R"({"text":"Nebenstr. 2","click":"OK"})"
                  "\n");
  QTest::keyClick(field_, Qt::Key_F2);
  EXPECT_EQ(f2_->handled, 1);
  EXPECT_EQ(field_->text(), "Nebenstr. 2");
  EXPECT_EQ(field_->selectedText(), "Nebenstr. 2");  // selected, as after any zoom
  const std::vector<QJsonObject> log = dialogs_.Log();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log[0].value("form").toString(), "frmZoom");
  EXPECT_EQ(log[0].value("title").toString(), "Straße");
  EXPECT_EQ(log[0].value("answer").toInt(), 1);
}

TEST_F(CheckF2KeyTest, ALockedFieldOpensALockedZoom) {
  field_->setReadOnly(true);
  bool read_only = false;
  QString tooltip;
  SetShownHook([&](QDialog& dialog) {
    auto& zoom = static_cast<ZoomForm&>(dialog);
    read_only = zoom.Editor()->isReadOnly();
    tooltip = zoom.Editor()->toolTip();
    const QString folder = qEnvironmentVariable("NORVIK50_PICTURES_DIR");
    if (!folder.isEmpty()) {
      QDir().mkpath(folder);
      EXPECT_TRUE(dialog.grab().save(folder + "/zoom_from_f2.png"));
    }
  });
  dialogs_.Script(R"({"text":"anders","click":"OK"})"
                  "\n");
  QTest::keyClick(field_, Qt::Key_F2);
  EXPECT_EQ(f2_->handled, 1);
  EXPECT_TRUE(read_only);
  EXPECT_EQ(tooltip, "Straße und Hausnummer");
  EXPECT_EQ(field_->text(), "Hauptstr. 1");  // the locked zoom took no typing
}

TEST_F(CheckF2KeyTest, AnyOtherKeyReachesTheFieldAndOpensNothing) {
  field_->setCursorPosition(field_->text().size());
  QTest::keyClick(field_, Qt::Key_F3);
  QTest::keyClick(field_, Qt::Key_F2, Qt::ShiftModifier);
  QTest::keyClick(field_, Qt::Key_F2, Qt::ControlModifier);
  QTest::keyClicks(field_, "a");
  EXPECT_EQ(f2_->handled, 0);
  EXPECT_EQ(field_->text(), "Hauptstr. 1a");  // the key went on to the field
  EXPECT_TRUE(dialogs_.Log().empty());
}

// ---- tklCheckMouseMove and tklCheckMouseDown ---------------------------

// A button with a hover effect as a ported form writes it: its MouseMove
// handler asks tklCheckMouseMove and keeps the answer as its hover state.
class HoverButton final : public QObject {
 public:
  HoverButton(LIB& lib, QPushButton& button) : lib_(lib), button_(button) {
    button.setMouseTracking(true);
    button.installEventFilter(this);
  }
  bool hovered = false;
  int moves = 0;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == &button_ && event->type() == QEvent::MouseMove) {
      const QPointF at = static_cast<QMouseEvent&>(*event).position();
      ++moves;
      hovered = lib_.tklCheckMouseMove(QtMousePointer(&button_), static_cast<float>(at.x() * 15),
                                       static_cast<float>(at.y() * 15));
    }
    return false;
  }

 private:
  LIB& lib_;
  QPushButton& button_;
};

class MouseHolderQtTest : public QtMembersTest {
 protected:
  MouseHolderQtTest() : QtMembersTest("de-DE") {
    form_.resize(300, 100);
    button_ = new QPushButton("Speichern", &form_);
    button_->setGeometry(10, 10, 80, 25);
    form_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&form_));
  }
  ~MouseHolderQtTest() override {
    if (QWidget* grabber = QWidget::mouseGrabber()) grabber->releaseMouse();
  }
  static void SetUpTestSuite() { EnsureApplication(); }

  QWidget form_;
  QPushButton* button_;
};

TEST_F(MouseHolderQtTest, TheButtonHoldsTheMouseWhileThePointerIsOnIt) {
  const auto control = QtMousePointer(button_);
  auto* holder = dynamic_cast<MouseHolder*>(control.get());
  ASSERT_NE(holder, nullptr);
  EXPECT_EQ(holder->WidthTwips(), 80 * 15);
  EXPECT_EQ(holder->HeightTwips(), 25 * 15);
  EXPECT_TRUE(lib_.tklCheckMouseMove(control, 40 * 15, 12 * 15));
  EXPECT_EQ(QWidget::mouseGrabber(), button_);
  EXPECT_TRUE(holder->HoldsMouse());
  EXPECT_FALSE(lib_.tklCheckMouseMove(control, 81 * 15, 12 * 15));
  EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
  // A release outside is no click, and lets go of the mouse.
  lib_.tklCheckMouseMove(control, 5, 5);
  EXPECT_FALSE(lib_.tklCheckMouseDown(control, 40 * 15, -15));
  EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
  // Gone: nothing is on it and nothing is held.
  delete button_;
  EXPECT_FALSE(lib_.tklCheckMouseMove(control, 5, 5));
  EXPECT_FALSE(holder->HoldsMouse());
}

// Held, the button is told of the move that takes the pointer off it,
// which without the hold would go to the form: the hover state ends.
TEST_F(MouseHolderQtTest, TheMoveOffTheButtonReachesItsHandler) {
  HoverButton hover(lib_, *button_);
  QTest::mouseMove(button_, QPoint(40, 12));
  EXPECT_EQ(hover.moves, 1);
  EXPECT_TRUE(hover.hovered);
  QTest::mouseMove(&form_, QPoint(200, 60));  // on the form, far off the button
  EXPECT_EQ(hover.moves, 2);
  EXPECT_FALSE(hover.hovered);
  EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
  // Let go, the next move off the button goes to the form, as it should.
  QTest::mouseMove(&form_, QPoint(220, 70));
  EXPECT_EQ(hover.moves, 2);
}

}  // namespace
}  // namespace norvik50::qt
