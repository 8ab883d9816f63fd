// frmZoom on the offscreen platform: keys in the editor, the locked
// editor, and tklZoomTextBox on the host's own Qt fields.
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <fstream>
#include <functional>
#include <utility>
#include <vector>

#include "core/library_state.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/zoom_form.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "norvik50/registry.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;

ZoomRequest Request(const std::u16string& text, bool locked = false) {
  ZoomRequest r;
  r.title = u"Zoom";
  r.text = text;
  r.locked = locked;
  r.width_twips = 9000;
  r.height_twips = 5400;
  return r;
}

template <typename Act>
bool ShowAndAct(ZoomForm& form, Act act) {
  QTimer::singleShot(0, &form, [&] {
    act();
    if (form.isVisible()) form.close();
  });
  form.exec();
  return form.Confirmed();
}

class ZoomFormTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
};

TEST_F(ZoomFormTest, EnterConfirmsAndCtrlJBreaksTheLine) {
  ZoomForm form(Request(u"alt"), nullptr);
  EXPECT_TRUE(ShowAndAct(form, [&] {
    QTest::keyClicks(form.Editor(), "eins");
    QTest::keyClick(form.Editor(), Qt::Key_J, Qt::ControlModifier);
    QTest::keyClicks(form.Editor(), "zwei");
    QTest::keyClick(form.Editor(), Qt::Key_Return);
  }));
  // The whole first text was selected, so typing replaced it.
  EXPECT_EQ(form.Text(), "eins\nzwei");
}

TEST_F(ZoomFormTest, F2TogglesBetweenAllSelectedAndTheCaretAtTheEnd) {
  ZoomForm form(Request(u"Text"), nullptr);
  ShowAndAct(form, [&] {
    EXPECT_EQ(form.Editor()->textCursor().selectedText(), "Text");
    QTest::keyClick(form.Editor(), Qt::Key_F2);
    EXPECT_FALSE(form.Editor()->textCursor().hasSelection());
    EXPECT_EQ(form.Editor()->textCursor().position(), 4);
    QTest::keyClick(form.Editor(), Qt::Key_F2);
    EXPECT_EQ(form.Editor()->textCursor().selectedText(), "Text");
  });
}

TEST_F(ZoomFormTest, ALockedEditorTakesNoTypingAndCancelAndCloseDiscard) {
  ZoomForm locked(Request(u"fest", true), nullptr);
  EXPECT_FALSE(ShowAndAct(locked, [&] { QTest::keyClicks(locked.Editor(), "x"); }));
  EXPECT_EQ(locked.Text(), "fest");
  EXPECT_TRUE(locked.Editor()->isReadOnly());
  ZoomForm cancelled(Request(u"a"), nullptr);
  EXPECT_FALSE(ShowAndAct(cancelled, [&] {
    QTest::keyClicks(cancelled.Editor(), "b");
    cancelled.findChild<QPushButton*>("cmdCancel")->click();
  }));
}

TEST_F(ZoomFormTest, TheEditorFollowsTheWindowsSize) {
  ZoomForm form(Request(u""), nullptr);
  EXPECT_EQ(form.WidthTwips(), 9000);
  EXPECT_EQ(form.HeightTwips(), 5400);
  form.resize(700, 450);
  form.show();
  EXPECT_EQ(form.Editor()->width(), 700 - 2 * ZoomForm::kMargin);
  EXPECT_LT(form.Editor()->geometry().bottom(),
            form.findChild<QPushButton*>("cmdOK")->geometry().top());
  form.hide();
}

class ZoomMemberQtTest : public ::testing::Test {
 protected:
  ZoomMemberQtTest() { InstallQtDialogs(); }
  // The host's fields exist before the first dialog.
  static void SetUpTestSuite() { EnsureApplication(); }
  ~ZoomMemberQtTest() override {
    SetShownHook(nullptr);
    SetUserInterface(nullptr);
    SetBaseKey(u"");
  }
  TempFolder temp_;
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  ScopedEnv script_{"NORVIK50_DIALOG_SCRIPT", std::nullopt};
  LIB lib_;
};

TEST_F(ZoomMemberQtTest, TheHostsFieldGetsTheEditedTextAndTheSizeIsKept) {
  QLineEdit line;
  line.setText("Kunde");
  line.setToolTip("Name");
  QString seen_tooltip;
  SetShownHook([&](QDialog& dialog) {
    auto& form = static_cast<ZoomForm&>(dialog);
    seen_tooltip = form.Editor()->toolTip();
    QTest::keyClicks(form.Editor(), "Lieferant");
    form.resize(640, 400);
    form.findChild<QPushButton*>("cmdOK")->click();
  });
  lib_.tklZoomTextBox(QtTextControl(&line));
  EXPECT_EQ(line.text(), "Lieferant");
  EXPECT_EQ(line.selectedText(), "Lieferant");
  EXPECT_EQ(seen_tooltip, "Name");

  // The next zoom, also from a fresh library object, opens at that size.
  LIB other;
  QSize opened;
  QPlainTextEdit plain;
  plain.setPlainText("a\nb");
  plain.setReadOnly(true);
  bool read_only = false;
  SetShownHook([&](QDialog& dialog) {
    auto& form = static_cast<ZoomForm&>(dialog);
    opened = form.size();
    read_only = form.Editor()->isReadOnly();
    form.close();
  });
  other.tklZoomTextBox(QtTextControl(&plain));
  EXPECT_EQ(opened, QSize(640, 400));
  EXPECT_TRUE(read_only);
  EXPECT_EQ(plain.toPlainText(), "a\nb");
  const std::u16string key = lib_.tklRegKey() + u"\\Positions\\Forms\\ZoomWindow";
  EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Width"), (640 + 8) * 15);
  EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Height"), (400 + 18 + 8) * 15);

  // IgnoreAttributes: the read-only field's text can be edited in the zoom.
  QTextEdit rich;
  rich.setPlainText("r");
  rich.setReadOnly(true);
  SetShownHook([&](QDialog& dialog) {
    auto& form = static_cast<ZoomForm&>(dialog);
    read_only = form.Editor()->isReadOnly();
    form.close();
  });
  lib_.tklZoomTextBox(QtTextControl(&rich), u"", true);
  EXPECT_FALSE(read_only);
}

// However the window is closed, its size is written when it unloads, also
// the size it opened with and with nothing stored before.
TEST_F(ZoomMemberQtTest, EveryWayOfClosingWritesTheSize) {
  const std::u16string key = lib_.tklRegKey() + u"\\Positions\\Forms\\ZoomWindow";
  const std::vector<std::pair<const char*, std::function<void(ZoomForm&)>>> ways = {
      {"OK", [](ZoomForm& f) { f.findChild<QPushButton*>("cmdOK")->click(); }},
      {"Cancel", [](ZoomForm& f) { f.findChild<QPushButton*>("cmdCancel")->click(); }},
      {"Enter", [](ZoomForm& f) { QTest::keyClick(f.Editor(), Qt::Key_Return); }},
      {"Escape", [](ZoomForm& f) { QTest::keyClick(f.Editor(), Qt::Key_Escape); }},
      {"close box", [](ZoomForm& f) { f.close(); }},
  };
  constexpr int32_t kAbsent = -1;
  for (const auto& [how, close] : ways) {
    lib_.tkrDeleteKey(HKEY_CURRENT_USER, key);
    ASSERT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Width", kAbsent), kAbsent);
    bool closed = false;
    SetShownHook([&](QDialog& dialog) {
      close(static_cast<ZoomForm&>(dialog));
      closed = !dialog.isVisible();
    });
    QLineEdit line;
    lib_.tklZoomTextBox(QtTextControl(&line));
    EXPECT_TRUE(closed) << how;
    EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Width", kAbsent), 9000) << how;
    EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Height", kAbsent), 5400) << how;
  }
}

// A dialog script types into the zoom (F2 first: the caret goes to the
// end, so the text is appended) and the log records the form.
TEST(ZoomScriptTest, TheScriptTypesIntoTheEditorAndTheLogShowsTheText) {
  EnsureApplication();
  TempFolder temp;
  ScopedEnv store("NORVIK50_REGISTRY_DIR", temp.File("reg"));
  ScopedEnv script("NORVIK50_DIALOG_SCRIPT", temp.File("script.jsonl"));
  ScopedEnv log("NORVIK50_DIALOG_LOG", temp.File("log.jsonl"));
  std::ofstream(temp.File("script.jsonl")) << R"({"keys":["F2"],"text":"neu","click":"OK"})"
                                           << "\n";
  RestartDialogScript();
  InstallQtDialogs();
  QLineEdit line;
  line.setText("alt");
  {
    LIB lib;
    lib.tklZoomTextBox(QtTextControl(&line));
  }
  SetUserInterface(nullptr);
  EXPECT_EQ(line.text(), "altneu");
  std::ifstream in(temp.File("log.jsonl"));
  std::string first;
  std::getline(in, first);
  const QJsonObject o = QJsonDocument::fromJson(QByteArray::fromStdString(first)).object();
  EXPECT_EQ(o.value("form").toString(), "frmZoom");
  EXPECT_EQ(o.value("title").toString(), "Zoom");
  EXPECT_EQ(o.value("value").toString(), "altneu");
  EXPECT_EQ(o.value("answer").toInt(), 1);
  EXPECT_EQ(o.value("width").toInt(), 9000);
}

}  // namespace
}  // namespace norvik50::qt
