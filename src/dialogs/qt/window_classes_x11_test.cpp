// Windows of another program found by their class and waited for, and the
// pointer kept inside a rectangle, on a real X server (Xvfb): only there
// do WM_CLASS, the window list and pointer barriers exist.
#include <gtest/gtest.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <QApplication>
#include <QGuiApplication>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>

#include "norvik50/dispatch.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using Clock = std::chrono::steady_clock;

// Another program's window of class "NorvikProbe" (instance "norvik-probe")
// that stays for `milliseconds`.
class ProbeWindow {
 public:
  explicit ProbeWindow(int milliseconds, const QString& title = QStringLiteral("Probe Übersicht")) {
    process_.start(QStringLiteral(NORVIK50_CLASS_WINDOW),
                   {QStringLiteral("norvik-probe"), QStringLiteral("NorvikProbe"), title,
                    QString::number(milliseconds)});
  }
  ~ProbeWindow() {
    process_.kill();
    process_.waitForFinished(2000);
  }
  // The window's id once it is mapped; 0 when the program did not map it.
  int32_t WaitMapped() {
    if (!process_.waitForReadyRead(5000)) return 0;
    const QByteArray line = process_.readLine().trimmed();
    return line.startsWith("mapped ") ? line.mid(7).toInt() : 0;
  }
  void Kill() {
    process_.kill();
    process_.waitForFinished(2000);
  }

 private:
  QProcess process_;
};

class WindowClassesX11Test : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("xcb"));
    InstallQtDialogs();
  }
  void TearDown() override { SetUserInterface(nullptr); }

  testing::TempFolder folder_;
  testing::ScopedEnv tmp_{"TMPDIR", folder_.path()};
  testing::ScopedEnv registry_{"NORVIK50_REGISTRY_DIR", folder_.path()};
  LIB lib_;
};

TEST_F(WindowClassesX11Test, AnotherProgramsWindowIsWaitedForFoundAndSeenToGo) {
  EXPECT_EQ(lib_.tklFindWindow(u"NorvikProbe"), 0);
  ProbeWindow probe(800);
  // The host's own timer keeps running while the library waits.
  bool timer_fired = false;
  QTimer::singleShot(100, [&] { timer_fired = true; });

  EXPECT_TRUE(lib_.tklWaitForClassStarted(u"NorvikProbe", 5000));
  const int32_t id = probe.WaitMapped();
  ASSERT_NE(id, 0);
  EXPECT_EQ(lib_.tklFindWindow(u"NorvikProbe"), id);
  EXPECT_EQ(lib_.tklFindWindow(u"norvik-probe"), id);  // the instance part
  EXPECT_EQ(lib_.tklFindWindow(u"NORVIKPROBE", u"probe übersicht"), id);
  EXPECT_EQ(lib_.tklFindWindow(u"", u"Probe Übersicht"), id);
  EXPECT_EQ(lib_.tklFindWindow(u"NorvikProbe", u"Another title"), 0);

  const auto start = Clock::now();
  EXPECT_TRUE(lib_.tklWaitForClassFinished(u"NorvikProbe", 5000));
  EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(4000));
  EXPECT_TRUE(timer_fired);
  EXPECT_EQ(lib_.tklFindWindow(u"NorvikProbe"), 0);
}

TEST_F(WindowClassesX11Test, WaitsEndFalseAtTheirLimit) {
  EXPECT_FALSE(lib_.tklWaitForClassStarted(u"NorvikProbe", 150));
  ProbeWindow probe(10000);
  ASSERT_NE(probe.WaitMapped(), 0);
  EXPECT_TRUE(lib_.tklWaitForClassStarted(u"NorvikProbe", 0));
  const auto start = Clock::now();
  EXPECT_FALSE(lib_.tklWaitForClassFinished(u"NorvikProbe", 200));
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(200));
  probe.Kill();
  EXPECT_TRUE(lib_.tklWaitForClassFinished(u"NorvikProbe", 3000));
}

TEST_F(WindowClassesX11Test, TheApplicationsOwnShownWindowsAreFoundHiddenOnesNot) {
  QWidget own;
  own.setWindowTitle(QStringLiteral("Eigenes Fenster"));
  own.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&own));
  EXPECT_EQ(lib_.tklFindWindow(u"", u"Eigenes Fenster"), static_cast<int32_t>(own.winId()));
  own.hide();
  QTest::qWait(50);
  EXPECT_EQ(lib_.tklFindWindow(u"", u"Eigenes Fenster"), 0);
}

TEST_F(WindowClassesX11Test, ByNameAndFromTheCommandLine) {
  ProbeWindow probe(10000);
  const int32_t id = probe.WaitMapped();
  ASSERT_NE(id, 0);
  auto r = Invoke(lib_, "tklFindWindow", {Variant(u"NorvikProbe")});
  EXPECT_EQ(r.result->as_long(), id);
  r = Invoke(lib_, "tklWaitForClassStarted", {Variant(u"norvik-probe"), Variant(int32_t{0})});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  r = Invoke(lib_, "tklWaitForClassFinished", {Variant(u"NorvikProbe"), Variant(int32_t{50})});
  EXPECT_EQ(r.result->as_boolean(), kFalse);
  const testing::CommandRun run = testing::RunCommand(
      std::string("QT_QPA_PLATFORM=xcb ") + NORVIK50_TOOL + " call tklFindWindow NorvikProbe");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.out, std::to_string(id) + "\n");
}

// The pointer as a person moves it: relative motion through XTest, which
// pointer barriers stop as they stop a mouse.
class Pointer {
 public:
  Pointer() : connection_(xcb_connect(nullptr, nullptr)) {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  }
  ~Pointer() { xcb_disconnect(connection_); }
  bool Usable() const { return xcb_connection_has_error(connection_) == 0; }
  void WarpTo(int x, int y) {
    xcb_warp_pointer(connection_, XCB_NONE, root_, 0, 0, 0, 0, static_cast<int16_t>(x),
                     static_cast<int16_t>(y));
    Sync();
  }
  void MoveBy(int dx, int dy) {
    xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 1, XCB_CURRENT_TIME, XCB_NONE,
                        static_cast<int16_t>(dx), static_cast<int16_t>(dy), 0);
    Sync();
  }
  std::pair<int, int> Position() {
    xcb_query_pointer_reply_t* reply =
        xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, root_), nullptr);
    const std::pair<int, int> at =
        reply ? std::pair<int, int>(reply->root_x, reply->root_y) : std::pair<int, int>(-1, -1);
    std::free(reply);
    return at;
  }

 private:
  void Sync() {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  }
  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
};

// The rectangle of the tests: pixels 100 to 299 across, 200 to 349 down.
constexpr int32_t kLeft = 100 * 15;
constexpr int32_t kTop = 200 * 15;
constexpr int32_t kWidth = 200 * 15;
constexpr int32_t kHeight = 150 * 15;

class PointerClipX11Test : public WindowClassesX11Test {
 protected:
  void SetUp() override {
    WindowClassesX11Test::SetUp();
    ASSERT_TRUE(pointer_.Usable());
    pointer_.WarpTo(150, 250);
  }
  void TearDown() override {
    lib_.tklClipCursor();
    WindowClassesX11Test::TearDown();
  }
  // Where the pointer ends after a long push each way from the middle.
  struct Reach {
    int left, right, top, bottom;
  };
  Reach PushEachWay() {
    Reach reach{};
    pointer_.WarpTo(200, 275);
    pointer_.MoveBy(-600, 0);
    reach.left = pointer_.Position().first;
    pointer_.MoveBy(900, 0);
    reach.right = pointer_.Position().first;
    pointer_.MoveBy(0, -600);
    reach.top = pointer_.Position().second;
    pointer_.MoveBy(0, 900);
    reach.bottom = pointer_.Position().second;
    return reach;
  }
  Pointer pointer_;
};

TEST_F(PointerClipX11Test, ThePointerStopsAtTheEdgesAndMovesFreelyOnceReleased) {
  ASSERT_TRUE(lib_.tklClipCursor(kLeft, kTop, kWidth, kHeight));
  const Reach caught = PushEachWay();
  EXPECT_EQ(caught.left, 100);
  EXPECT_EQ(caught.right, 299);
  EXPECT_EQ(caught.top, 200);
  EXPECT_EQ(caught.bottom, 349);
  // Diagonally into a corner: no gap where two edges meet.
  pointer_.MoveBy(700, 700);
  EXPECT_EQ(pointer_.Position(), std::make_pair(299, 349));

  EXPECT_TRUE(lib_.tklClipCursor());
  const Reach free = PushEachWay();
  EXPECT_LT(free.left, 100);
  EXPECT_GT(free.right, 299);
  EXPECT_LT(free.top, 200);
  EXPECT_GT(free.bottom, 349);
}

TEST_F(PointerClipX11Test, APointerOutsideIsBroughtInAndANewRectangleReplacesTheOld) {
  pointer_.WarpTo(900, 800);
  ASSERT_TRUE(lib_.tklClipCursor(kLeft, kTop, kWidth, kHeight));
  EXPECT_EQ(pointer_.Position(), std::make_pair(299, 349));
  // A second rectangle: the first one's edges are gone.
  ASSERT_TRUE(lib_.tklClipCursor(0, 0, 600 * 15, 500 * 15));
  pointer_.MoveBy(200, 100);
  EXPECT_EQ(pointer_.Position(), std::make_pair(499, 449));
  pointer_.MoveBy(500, 500);
  EXPECT_EQ(pointer_.Position(), std::make_pair(599, 499));
}

TEST_F(PointerClipX11Test, ARectangleOffTheScreenCannotHoldThePointer) {
  EXPECT_FALSE(lib_.tklClipCursor(-3000 * 15, 0, 1000 * 15, 1000 * 15));
  pointer_.MoveBy(-600, 0);
  EXPECT_EQ(pointer_.Position().first, 0);
}

TEST_F(PointerClipX11Test, ThePointerGoesFreeWithTheLibThatConfinedIt) {
  {
    LIB host;
    ASSERT_TRUE(host.tklClipCursor(kLeft, kTop, kWidth, kHeight));
    EXPECT_EQ(PushEachWay().right, 299);
  }
  EXPECT_GT(PushEachWay().right, 299);
}

TEST_F(PointerClipX11Test, ThePointerGoesFreeWhenTheApplicationIsNoLongerActive) {
  QWidget window;
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  // No window manager activates it on a bare X server: the application
  // takes the focus itself.
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  ASSERT_TRUE(QTest::qWaitFor(
      [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; }, 2000));
  ASSERT_TRUE(lib_.tklClipCursor(kLeft, kTop, kWidth, kHeight));
  EXPECT_EQ(PushEachWay().right, 299);
  window.hide();
  ASSERT_TRUE(QTest::qWaitFor(
      [] { return QGuiApplication::applicationState() != Qt::ApplicationActive; }, 2000));
  EXPECT_GT(PushEachWay().right, 299);
}

TEST_F(PointerClipX11Test, ThePointerGoesFreeWhenTheProgramThatConfinedItEnds) {
  // A command line call confines it and ends at once: its connection to
  // the X server goes, and the confinement with it.
  pointer_.WarpTo(900, 800);
  const testing::CommandRun run = testing::RunCommand(
      std::string("QT_QPA_PLATFORM=xcb ") + NORVIK50_TOOL + " call tklClipCursor " +
      std::to_string(kLeft) + " " + std::to_string(kTop) + " " + std::to_string(kWidth) + " " +
      std::to_string(kHeight));
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.out, "True\n");
  // It did confine it: the pointer was brought into the rectangle.
  EXPECT_EQ(pointer_.Position(), std::make_pair(299, 349));
  EXPECT_GT(PushEachWay().right, 299);
}

}  // namespace
}  // namespace norvik50::qt
