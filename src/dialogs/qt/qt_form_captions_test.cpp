// A real Qt form's captions from the real resource libraries in German and
// English, named by the widgets' dynamic properties.
#include <gtest/gtest.h>

#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <filesystem>

#include "dialogs/qt/qt_application.h"
#include "norvik50/qt_dialogs.h"
#include "resources/resource_test_support.h"

namespace norvik50 {
namespace {

using testing::FixturePath;
using testing::ResourceMachineTest;

// The customer form as a host designs it: German captions of its own,
// every text naming its resource.
class CustomerForm : public QWidget {
 public:
  CustomerForm() {
    setObjectName("frmCustomer");
    setWindowTitle("Kunde");
    setProperty("resId", 1000);  // a number works as well as its text
    auto* layout = new QVBoxLayout(this);
    name_label = new QLabel("Name", this);
    name_label->setProperty("resId", "1003");
    name = new QLineEdit(this);
    name_label->setBuddy(name);
    save = new QPushButton("Sichern", this);
    save->setProperty("resId", "1001");
    save->setProperty("toolTipResId", "1002");
    cancel = new QPushButton("Abbruch", this);
    cancel->setProperty("resId", "cmdCancel");  // the built-in document's item
    note = new QLabel("Hinweis", this);
    note->setProperty("resId", "1007");  // German: empty; English: absent
    group = new QGroupBox("Gruppe", this);
    group->setProperty("resId", "4711");  // no such string
    orders = new QTreeWidget(this);
    orders->setHeaderLabels({"Auftrag", "Stück", "Datum"});
    orders->setProperty("headerResIds", "1004|1005|");
    orders->addTopLevelItem(new QTreeWidgetItem({"A-17", "3", "05.03.2024"}));
    tabs = new QTabWidget(this);
    tabs->addTab(new QWidget, "Start");
    tabs->addTab(new QWidget, "Mehr");
    tabs->setProperty("tabResIds", QStringList{"1006", ""});
    save_action = new QAction("Sichern", this);
    save_action->setProperty("resId", "1001");
    save_action->setProperty("toolTipResId", "1002");
    for (QWidget* w : std::initializer_list<QWidget*>{name_label, name, save, cancel, note, group,
                                                      orders, tabs}) {
      layout->addWidget(w);
    }
  }
  QLabel* name_label;
  QLineEdit* name;
  QPushButton* save;
  QPushButton* cancel;
  QLabel* note;
  QGroupBox* group;
  QTreeWidget* orders;
  QTabWidget* tabs;
  QAction* save_action;
};

class QtFormCaptionsTest : public ResourceMachineTest {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }
  QtFormCaptionsTest() {
    for (const char* name : {"Captions_DE.dll", "Captions_EN.dll"}) {
      std::filesystem::copy_file(FixturePath(name), temp_.File(std::string("c/App/") + name));
    }
    SetMachineValue(u"ResourceDLL", u"C:\\App\\Captions_%L.dll");
  }
};

TEST_F(QtFormCaptionsTest, EveryKindOfTextInBothLanguages) {
  struct Case {
    int32_t language;
    QStringList texts;
  };
  const Case cases[] = {
      {LANG_GERMAN,
       {"Kunde bearbeiten", "&Name:", "&Speichern", "Speichert den Kunden & schließt", "Abbrechen",
        "Hinweis", "Gruppe", "Bestellungen", "Menge", "Datum", "&Allgemein", "Mehr", "&Speichern",
        "Speichert den Kunden & schließt"}},
      {LANG_ENGLISH,
       {"Edit customer", "&Name:", "&Save", "Saves the customer & closes", "Cancel", "Hinweis",
        "Gruppe", "Orders", "Quantity", "Datum", "&General", "Mehr", "&Save",
        "Saves the customer & closes"}},
  };
  for (const Case& c : cases) {
    SetLanguage(c.language);
    CustomerForm form;
    // Title, label, button and tooltip, the built-in item, two headers, a
    // tab, the action and its tooltip.
    EXPECT_EQ(lib_.tklLoadFormCaptions(QtForm(&form)), 10);
    const QStringList texts = {form.windowTitle(),
                               form.name_label->text(),
                               form.save->text(),
                               form.save->toolTip(),
                               form.cancel->text(),
                               form.note->text(),
                               form.group->title(),
                               form.orders->headerItem()->text(0),
                               form.orders->headerItem()->text(1),
                               form.orders->headerItem()->text(2),
                               form.tabs->tabText(0),
                               form.tabs->tabText(1),
                               form.save_action->text(),
                               form.save_action->toolTip()};
    EXPECT_EQ(texts, c.texts) << c.language;
  }
  EXPECT_TRUE(LoggedErrors().empty());
}

TEST_F(QtFormCaptionsTest, TheAccessKeyOfALoadedCaptionWorks) {
  SetLanguage(LANG_ENGLISH);
  CustomerForm form;
  lib_.tklLoadFormCaptions(QtForm(&form));
  form.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
  form.activateWindow();
  int clicked = 0;
  QObject::connect(form.save, &QPushButton::clicked, [&clicked] { ++clicked; });
  QTest::keyClick(&form, Qt::Key_S, Qt::AltModifier);
  // A button's access key clicks it after a short flash.
  EXPECT_TRUE(QTest::qWaitFor([&clicked] { return clicked == 1; }));
  // The label's access key moves the focus to its buddy.
  QTest::keyClick(&form, Qt::Key_N, Qt::AltModifier);
  EXPECT_TRUE(form.name->hasFocus());
}

TEST_F(QtFormCaptionsTest, OnlyTheNamedPropertiesOfObjectsThatTakeThemCount) {
  SetLanguage(LANG_GERMAN);
  QWidget plain;
  auto* label = new QLabel("mine", &plain);
  label->setProperty("other", "1001");   // not one of the four names
  auto* table = new QTableView(&plain);  // no model: no header to set
  table->setProperty("headerResIds", "1004");
  auto* tree = new QTreeWidget(&plain);  // tab ids on a tree
  tree->setProperty("tabResIds", "1006");
  auto* edit = new QLineEdit(&plain);  // any object with a "text" takes a caption
  edit->setProperty("resId", "1001");
  auto* object = new QObject(&plain);  // neither "text" nor "title"
  object->setProperty("resId", "1001");
  EXPECT_EQ(lib_.tklLoadFormCaptions(QtForm(&plain)), 1);
  EXPECT_EQ(label->text(), "mine");
  EXPECT_EQ(tree->headerItem()->text(0), "1");
  EXPECT_EQ(edit->text(), "&Speichern");
  // A window that is gone has no texts.
  auto gone = std::make_unique<CustomerForm>();
  const auto form = QtForm(gone.get());
  gone.reset();
  EXPECT_EQ(lib_.tklLoadFormCaptions(form), 0);
}

}  // namespace
}  // namespace norvik50
