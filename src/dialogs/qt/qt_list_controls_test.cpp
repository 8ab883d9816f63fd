// The host's list boxes, combo boxes, tab bars and tab widgets filled by
// the list-filling members and read back from the widgets.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QVBoxLayout>
#include <functional>
#include <memory>

#include "dialogs/qt/qt_application.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "norvik50/xml.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

std::shared_ptr<XmlDocument> Document(std::u16string_view items) {
  auto doc = std::make_shared<XmlDocument>();
  EXPECT_TRUE(doc->LoadXml(u"<resources>" + std::u16string(items) + u"</resources>"));
  return doc;
}

// Rows as "text=data", as the widget holds them.
using Rows = QStringList;

// One kind of list widget: makes it with one old row, wraps it, reads it.
struct ListKind {
  const char* name;
  std::function<std::shared_ptr<QWidget>()> make;
  std::function<std::shared_ptr<ListControl>(QWidget*)> wrap;
  std::function<Rows(QWidget*)> rows;
};

std::vector<ListKind> ListKinds() {
  return {
      {"QListWidget",
       [] {
         auto list = std::make_shared<QListWidget>();
         list->addItem("old");
         return std::static_pointer_cast<QWidget>(list);
       },
       [](QWidget* w) { return QtListControl(static_cast<QListWidget*>(w)); },
       [](QWidget* w) {
         auto* list = static_cast<QListWidget*>(w);
         Rows rows;
         for (int i = 0; i < list->count(); ++i) {
           rows << list->item(i)->text() + "=" + list->item(i)->data(Qt::UserRole).toString();
         }
         return rows;
       }},
      {"QComboBox",
       [] {
         auto combo = std::make_shared<QComboBox>();
         combo->addItem("old");
         return std::static_pointer_cast<QWidget>(combo);
       },
       [](QWidget* w) { return QtListControl(static_cast<QComboBox*>(w)); },
       [](QWidget* w) {
         auto* combo = static_cast<QComboBox*>(w);
         Rows rows;
         for (int i = 0; i < combo->count(); ++i) {
           rows << combo->itemText(i) + "=" + combo->itemData(i, Qt::UserRole).toString();
         }
         return rows;
       }},
  };
}

class QtListControlTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }
  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  LIB lib_;
};

TEST_F(QtListControlTest, TheFillersFillBothListKinds) {
  const auto doc = Document(
      u"<item name=\"c\" number=\"7\" text=\"Rot|#F00\"/>"
      u"<item name=\"c\" number=\"1\" text=\"Gr\u00fcn\"/>"
      u"<item name=\"n\" number=\"0\" text=\"null\"/>"
      u"<item name=\"n\" number=\"1\" text=\"eins|1\"/>"
      u"<item name=\"n\" number=\"3\" text=\"drei\"/>");
  for (const ListKind& kind : ListKinds()) {
    SCOPED_TRACE(kind.name);
    const auto widget = kind.make();
    const auto list = kind.wrap(widget.get());
    // The old row goes; every item named c comes, its number as data.
    lib_.tklXMLFillList(doc, list, u"c");
    EXPECT_EQ(kind.rows(widget.get()), (Rows{"Rot|#F00=7", "Gr\u00fcn=1"}));
    // Numbers 0 and 1 up to the gap before 3; the text before "|"; the
    // number formatted in front.
    lib_.tklXMLFillComboWithResList(doc, list, u"n", u"00 ");
    EXPECT_EQ(kind.rows(widget.get()), (Rows{"00 null=0", "01 eins=1"}));
    lib_.tklXMLFillList(doc, list, u"none");
    EXPECT_EQ(kind.rows(widget.get()), Rows{});
    EXPECT_EQ(list->NewIndex(), -1);
  }
}

TEST_F(QtListControlTest, RowsOutsideTheListRaiseSubscriptOutOfRange) {
  for (const ListKind& kind : ListKinds()) {
    SCOPED_TRACE(kind.name);
    const auto widget = kind.make();
    const auto list = kind.wrap(widget.get());
    list->AddItem(u"new");
    EXPECT_EQ(list->NewIndex(), 1);
    EXPECT_EQ(list->ItemData(1), 0);  // a new row's data
    list->SetItemData(0, -5);
    EXPECT_EQ(list->ItemData(0), -5);
    for (int32_t bad : {-1, 2, 1000}) {
      try {
        list->SetItemData(bad, 1);
        ADD_FAILURE() << "no error for " << bad;
      } catch (const Error& e) {
        EXPECT_EQ(e.number(), kErrSubscript);
      }
      EXPECT_THROW(list->ItemData(bad), Error);
    }
  }
}

TEST_F(QtListControlTest, ASortedListKeepsEachNumberWithItsRow) {
  QListWidget list;
  list.setSortingEnabled(true);
  const auto doc = Document(
      u"<item name=\"c\" number=\"3\" text=\"Zebra\"/>"
      u"<item name=\"c\" number=\"1\" text=\"Affe\"/>"
      u"<item name=\"c\" number=\"2\" text=\"Maus\"/>");
  lib_.tklXMLFillList(doc, QtListControl(&list), u"c");
  ASSERT_EQ(list.count(), 3);
  EXPECT_EQ(list.item(0)->text(), "Affe");
  EXPECT_EQ(list.item(0)->data(Qt::UserRole).toInt(), 1);
  EXPECT_EQ(list.item(1)->data(Qt::UserRole).toInt(), 2);
  EXPECT_EQ(list.item(2)->data(Qt::UserRole).toInt(), 3);
}

TEST_F(QtListControlTest, ADestroyedWidgetTakesNoRows) {
  auto combo = std::make_unique<QComboBox>();
  const auto list = QtListControl(combo.get());
  combo.reset();
  list->Clear();
  list->AddItem(u"x");
  EXPECT_EQ(list->NewIndex(), -1);
  EXPECT_THROW(list->ItemData(0), Error);
  // The filler stops quietly.
  EXPECT_NO_THROW(lib_.tklXMLFillList(Document(u"<item name=\"c\" text=\"a\"/>"), list, u"c"));
}

// Tab captions with their keys, as the bar holds them.
QStringList Tabs(const QTabBar& bar) {
  QStringList tabs;
  for (int i = 0; i < bar.count(); ++i) tabs << bar.tabData(i).toString() + ":" + bar.tabText(i);
  return tabs;
}

TEST_F(QtListControlTest, TheTabFillerFillsBarsAndTabWidgets) {
  const auto doc = Document(
      u"<item name=\"t\" number=\"1\" text=\"Allgemein\"/>"
      u"<item name=\"t\" number=\"2\" text=\"Adresse\"/>"
      u"<item name=\"t\" number=\"1\" text=\"doppelt\"/>"
      u"<item name=\"t\" number=\"4\" text=\"nie\"/>");
  QTabBar bar;
  bar.addTab("alt");
  lib_.tklXMLFillTabStrip(doc, QtTabStrip(&bar), u"t");
  // The second number 1 is a duplicate key: the filling stops there.
  EXPECT_EQ(Tabs(bar), (QStringList{"T1:Allgemein", "T2:Adresse"}));

  QTabWidget tabs;
  tabs.addTab(new QWidget, "alt");
  lib_.tklXMLFillTabStrip(doc, QtTabStrip(&tabs), u"t");
  EXPECT_EQ(Tabs(*tabs.tabBar()), (QStringList{"T1:Allgemein", "T2:Adresse"}));
  EXPECT_EQ(tabs.count(), 2);
  EXPECT_NE(tabs.widget(1), nullptr);  // each tab has a page to show
}

TEST_F(QtListControlTest, TabsTakeAPositionAndRefuseADuplicateKey) {
  QTabBar bar;
  QTabWidget widget;
  for (const auto& strip : {QtTabStrip(&bar), QtTabStrip(&widget)}) {
    TabCollection& tabs = strip->Tabs();
    tabs.Add(std::nullopt, u"a", u"A");
    tabs.Add(1, u"b", u"B");             // in front
    tabs.Add(3, u"", u"C");              // one past the end; no key
    tabs.Add(std::nullopt, u"", u"D");   // an empty key is never a duplicate
    struct Bad {
      std::optional<int32_t> index;
      const char16_t* key;
      int32_t error;
    };
    for (const Bad& bad : {Bad{std::nullopt, u"a", kErrKeyNotUnique}, Bad{0, u"x", kErrSubscript},
                           Bad{6, u"x", kErrSubscript}, Bad{-1, u"x", kErrSubscript}}) {
      try {
        tabs.Add(bad.index, bad.key, u"bad");
        ADD_FAILURE() << "no error";
      } catch (const Error& e) {
        EXPECT_EQ(e.number(), bad.error);
      }
    }
  }
  EXPECT_EQ(Tabs(bar), (QStringList{"b:B", "a:A", ":C", ":D"}));
  EXPECT_EQ(Tabs(*widget.tabBar()), Tabs(bar));
}

TEST_F(QtListControlTest, ClearingATabWidgetDeletesOnlyItsOwnPages) {
  QTabWidget tabs;
  const QPointer<QWidget> host_page = new QWidget;
  tabs.addTab(host_page, "host");
  const auto strip = QtTabStrip(&tabs);
  strip->Tabs().Add(std::nullopt, u"k", u"own");
  const QPointer<QWidget> own_page = tabs.widget(1);
  strip->Tabs().Clear();
  EXPECT_EQ(tabs.count(), 0);
  EXPECT_TRUE(own_page.isNull());
  // The host's page is still the host's (the tab widget deletes it at the
  // end, as its child).
  EXPECT_FALSE(host_page.isNull());
}

// tklSetFocus on each list and tab kind: the focus moves from another
// field of the window to the widget behind the adapter.
TEST_F(QtListControlTest, SetFocusMovesTheFocusToEachKind) {
  struct Case {
    const char* kind;
    std::function<QWidget*(QWidget*)> make;
    std::function<std::shared_ptr<HostObject>(QWidget*)> adapt;
  };
  const Case cases[] = {
      {"QListWidget", [](QWidget* p) { return new QListWidget(p); },
       [](QWidget* w) { return QtListControl(static_cast<QListWidget*>(w)); }},
      {"QComboBox", [](QWidget* p) { return new QComboBox(p); },
       [](QWidget* w) { return QtListControl(static_cast<QComboBox*>(w)); }},
      {"QTabBar",
       [](QWidget* p) {
         auto* bar = new QTabBar(p);
         bar->addTab(QStringLiteral("a"));
         bar->setFocusPolicy(Qt::StrongFocus);
         return bar;
       },
       [](QWidget* w) { return QtTabStrip(static_cast<QTabBar*>(w)); }},
      {"QTabWidget",
       [](QWidget* p) {
         auto* tabs = new QTabWidget(p);
         tabs->addTab(new QWidget, QStringLiteral("a"));
         return tabs;
       },
       [](QWidget* w) { return QtTabStrip(static_cast<QTabWidget*>(w)); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.kind);
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* first = new QLineEdit(&window);
    layout->addWidget(first);
    QWidget* widget = c.make(&window);
    layout->addWidget(widget);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    ASSERT_EQ(QApplication::focusWidget(), first);

    lib_.tklSetFocus(c.adapt(widget));
    const QWidget* focused = QApplication::focusWidget();
    EXPECT_TRUE(focused == widget || widget->isAncestorOf(focused));
  }
  // The in-memory list cannot take the focus: nothing happens, nothing raises.
  lib_.tklSetFocus(std::make_shared<MemoryList>());
}

}  // namespace
}  // namespace norvik50
