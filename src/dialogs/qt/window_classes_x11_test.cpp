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
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "norvik50/dispatch.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::string_literals;

// Another program's window of class "NorvikProbe" (instance "norvik-probe")
// that stays for `milliseconds`.
class ProbeWindow {
 public:
  explicit ProbeWindow(int milliseconds, const QString& title = QStringLiteral("Probe Übersicht")) {
    process_.start(QStringLiteral(NORVIK50_CLASS_WINDOW),
                   {QStringLiteral("norvik-probe"), QStringLiteral("NorvikProbe"), title,
                    QString::number(milliseconds)});
  }
  ~ProbeWindow() { Kill(); }
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
    if (QGuiApplication::platformName() != QStringLiteral("xcb")) {
      GTEST_SKIP() << "needs an X display on the xcb platform (ctest runs these under xvfb-run)";
    }
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
  ProbeWindow probe(2000);
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
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return lib_.tklFindWindow(u"", u"Eigenes Fenster") == 0; }, 2000));
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

// Windows of the test's own connection, made as other programs and a
// window manager make them: clients with a class, a frame around a client,
// and what a running manager announces on the root window (its check
// window naming itself, its clients bottom to top).
class Desktop {
 public:
  Desktop() : c_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(c_) == 0) {
      root_ = xcb_setup_roots_iterator(xcb_get_setup(c_)).data->root;
    }
  }
  ~Desktop() {
    xcb_delete_property(c_, root_, Atom("_NET_SUPPORTING_WM_CHECK"));
    xcb_delete_property(c_, root_, Atom("_NET_CLIENT_LIST_STACKING"));
    Sync();
    xcb_disconnect(c_);
  }
  // `pop_up`: placed by the program itself past any window manager, as
  // menus and tooltips are.
  xcb_window_t Window(xcb_window_t parent, const std::string& wm_class, bool mapped,
                      bool pop_up = false) {
    const xcb_window_t window = xcb_generate_id(c_);
    const uint32_t override_redirect = pop_up ? 1 : 0;
    xcb_create_window(c_, XCB_COPY_FROM_PARENT, window, parent, 10, 10, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &override_redirect);
    if (!wm_class.empty()) {
      xcb_change_property(c_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                          static_cast<uint32_t>(wm_class.size()), wm_class.data());
    }
    if (mapped) xcb_map_window(c_, window);
    Sync();
    return window;
  }
  xcb_window_t Root() const { return root_; }
  // A manager that runs and lists `clients`, bottom to top.
  void AnnounceManager(const std::vector<xcb_window_t>& clients) {
    check_ = Window(root_, "", false);
    SetWindows(check_, "_NET_SUPPORTING_WM_CHECK", {check_});
    SetWindows(root_, "_NET_SUPPORTING_WM_CHECK", {check_});
    SetWindows(root_, "_NET_CLIENT_LIST_STACKING", clients);
  }
  // The manager ends without tidying up: its lists stay on the root.
  void EndManager() {
    xcb_destroy_window(c_, check_);
    Sync();
  }

 private:
  xcb_atom_t Atom(const char* name) {
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        c_, xcb_intern_atom(c_, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr);
    const xcb_atom_t atom = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return atom;
  }
  void SetWindows(xcb_window_t on, const char* name, const std::vector<xcb_window_t>& windows) {
    xcb_change_property(c_, XCB_PROP_MODE_REPLACE, on, Atom(name), XCB_ATOM_WINDOW, 32,
                        static_cast<uint32_t>(windows.size()), windows.data());
    Sync();
  }
  void Sync() { std::free(xcb_get_input_focus_reply(c_, xcb_get_input_focus(c_), nullptr)); }

  xcb_connection_t* c_;
  xcb_window_t root_ = 0;
  xcb_window_t check_ = 0;
};

TEST_F(WindowClassesX11Test, AManagersClientsCountAlsoWhenNotShownTheTopMostFirst) {
  Desktop desktop;
  const xcb_window_t lower = desktop.Window(desktop.Root(), "min\0Minimised\0"s, false);
  const xcb_window_t upper = desktop.Window(desktop.Root(), "min\0Minimised\0"s, false);
  // Without a manager, windows that are not shown are no one's to find.
  EXPECT_EQ(lib_.tklFindWindow(u"Minimised"), 0);
  desktop.AnnounceManager({lower, upper});
  EXPECT_EQ(lib_.tklFindWindow(u"Minimised"), static_cast<int32_t>(upper));
  desktop.AnnounceManager({upper, lower});
  EXPECT_EQ(lib_.tklFindWindow(u"min"), static_cast<int32_t>(lower));
  // A manager that ended left its list behind, which no longer counts.
  desktop.EndManager();
  EXPECT_EQ(lib_.tklFindWindow(u"Minimised"), 0);
}

TEST_F(WindowClassesX11Test, AFrameWithoutAClassStandsForTheClientInside) {
  Desktop desktop;
  const xcb_window_t frame = desktop.Window(desktop.Root(), "", true);
  const xcb_window_t client = desktop.Window(frame, "framed\0Framed\0"s, true);
  EXPECT_EQ(lib_.tklFindWindow(u"Framed"), static_cast<int32_t>(client));
}

TEST_F(WindowClassesX11Test, PopUpsAreNoTopLevelWindows) {
  Desktop desktop;
  const xcb_window_t shown = desktop.Window(desktop.Root(), "tip\0Tooltip\0"s, true);
  // Above the shown one, so it would be found first if it counted.
  desktop.Window(desktop.Root(), "tip\0Tooltip\0"s, true, true);
  EXPECT_EQ(lib_.tklFindWindow(u"Tooltip"), static_cast<int32_t>(shown));
}

// The pointer as a person moves it: relative motion through XTest, which
// pointer barriers stop as they stop a mouse.
class Pointer {
 public:
  Pointer() : connection_(xcb_connect(nullptr, nullptr)) {
    if (Usable()) root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
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
    if (IsSkipped()) return;
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
