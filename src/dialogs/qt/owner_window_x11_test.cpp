// A host hands the library its window as an X11 window id (ParentHwnd,
// lHWndParent). Only a real X server shows whether that id becomes the
// owner of the library's windows and whether an id naming no window is
// harmless, so this program runs on the xcb platform under Xvfb, apart
// from the offscreen tests.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QGuiApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>
#include <optional>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/progress_form.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

// An id no window has: X11 ids of a client carry its resource base in the
// high bits, and this one lies in no client's range on a fresh server.
constexpr int32_t kNoSuchWindow = 0x7ff00001;

ProgressForm* ProgressWindow() {
  for (QWidget* w : QApplication::topLevelWidgets()) {
    if (auto* form = dynamic_cast<ProgressForm*>(w)) return form;
  }
  return nullptr;
}

class X11OwnerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (QGuiApplication::platformName() != QStringLiteral("xcb")) {
      GTEST_SKIP() << "needs an X display on the xcb platform (ctest runs these under xvfb-run)";
    }
    InstallQtDialogs();
    host_.setWindowTitle(QStringLiteral("host"));
    host_.resize(400, 300);
    host_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&host_));
    // Another window is the active one: without the named owner, the
    // library would choose it, so the tests tell the two apart.
    active_.setWindowTitle(QStringLiteral("active"));
    active_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&active_));
    QApplication::setActiveWindow(&active_);
    lib_.tklClearMessage();
  }
  void TearDown() override {
    lib_.tklClearMessage();
    SetShownHook(nullptr);
    SetUserInterface(nullptr);
  }
  int32_t HostId() { return static_cast<int32_t>(host_.winId()); }

  // The log and the settings go to a folder of the test's own.
  testing::TempFolder folder_;
  testing::ScopedEnv tmp_{"TMPDIR", folder_.path()};
  testing::ScopedEnv registry_{"NORVIK50_REGISTRY_DIR", folder_.path()};
  testing::ScopedEnv no_script_{"NORVIK50_DIALOG_SCRIPT", std::nullopt};
  LIB lib_;
  QWidget host_;
  QWidget active_;
};

TEST_F(X11OwnerTest, ProgressWindowIsOwnedByTheHostsWindow) {
  lib_.tklSendMessage(Variant(u"Posting"), std::nullopt, std::nullopt, nullptr, nullptr,
                      HostId());
  ProgressForm* form = ProgressWindow();
  ASSERT_NE(form, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(form));
  ASSERT_NE(form->Owner(), nullptr);
  EXPECT_EQ(form->Owner()->winId(), host_.winId());
}

TEST_F(X11OwnerTest, AnIdNamingNoWindowStillShowsTheProgressWindow) {
  lib_.tklSendMessage(Variant(u"Posting"), std::nullopt, std::nullopt, nullptr, nullptr,
                      kNoSuchWindow);
  ProgressForm* form = ProgressWindow();
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(QTest::qWaitForWindowExposed(form));
  // The window keeps working: a second call shows the counter, a hide hides it.
  Variant count(int32_t{5});
  lib_.tklSendMessage(std::nullopt, std::nullopt, Variant(true), &count);
  EXPECT_TRUE(form->isVisible());
  lib_.tklHideMessage();
  EXPECT_FALSE(form->isVisible());
}

// The owner of the file dialog, seen while it is on screen; then the hook
// closes it, as a user cancelling would.
std::optional<WId> FileDialogOwner(LIB& lib, int32_t owner_id) {
  std::optional<WId> owner;
  bool shown = false;
  SetShownHook([&](QDialog& dialog) {
    shown = true;
    if (const QWindow* self = dialog.windowHandle()) {
      if (const QWindow* parent = self->transientParent()) owner = parent->winId();
    }
    dialog.close();
  });
  std::u16string name = u"";
  EXPECT_FALSE(lib.tklFileDialog(u"Text (*.TXT)|*.TXT", u"Open", name, 0, owner_id));
  EXPECT_TRUE(shown);
  EXPECT_EQ(name, u"");
  return owner;
}

TEST_F(X11OwnerTest, FileDialogIsOwnedByTheWindowTheCallerNames) {
  EXPECT_EQ(FileDialogOwner(lib_, HostId()), std::optional<WId>(host_.winId()));
}

TEST_F(X11OwnerTest, FileDialogWithAnIdNamingNoWindowOpensAndCancels) {
  // Shown and answered like any other: no crash, no hang.
  FileDialogOwner(lib_, kNoSuchWindow);
}

}  // namespace
}  // namespace norvik50::qt

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Without an X display Qt would end the process before any test could
  // say why; on the offscreen platform every test skips with the reason.
  if (qEnvironmentVariableIsEmpty("DISPLAY")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  return RUN_ALL_TESTS();
}
