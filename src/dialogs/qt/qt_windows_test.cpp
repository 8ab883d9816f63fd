// The screen's size, a form's inner size and forms kept on top, on real
// widgets of the offscreen platform.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTest>
#include <cstdlib>
#include <memory>

#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/virtual_keys.h"
#include "dialogs/qt/window_shape.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

using qt::EnsureApplication;

class QtWindowsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
  QtWindowsTest() { InstallQtDialogs(); }
  ~QtWindowsTest() override { SetUserInterface(nullptr); }
  static bool OnTop(const QWidget& window) {
    return window.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
  }
  LIB lib_;
};

TEST_F(QtWindowsTest, TheScreenIsThePrimaryScreenInTwips) {
  const QRect screen = QGuiApplication::primaryScreen()->geometry();
  ASSERT_GT(screen.width(), 0);
  EXPECT_EQ(lib_.tklGetScreenWidth(), screen.width() * 15);
  EXPECT_EQ(lib_.tklGetScreenHeight(), screen.height() * 15);
}

TEST_F(QtWindowsTest, TheMenuHeightIsTheStylesMenuBar) {
  QMainWindow window;
  window.menuBar()->addMenu("&Datei");
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_EQ(lib_.tklGetMenuHeight(), window.menuBar()->height() * 15);
  EXPECT_GT(lib_.tklGetMenuHeight(), 0);
}

TEST_F(QtWindowsTest, TheInnerSizeLeavesOutTheMenuBar) {
  QWidget plain;
  plain.resize(400, 300);
  int32_t width = 0;
  int32_t height = 0;
  lib_.tklGetInternalFormSize(QtForm(&plain), width, height);
  EXPECT_EQ(width, 400 * 15);
  EXPECT_EQ(height, 300 * 15);

  QMainWindow main;
  main.menuBar()->addMenu("&File");
  main.resize(400, 300);
  main.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&main));
  lib_.tklGetInternalFormSize(QtForm(&main), width, height);
  EXPECT_EQ(width, main.width() * 15);
  EXPECT_EQ(height, (main.height() - main.menuBar()->height()) * 15);
  // A hidden menu bar takes no room.
  main.menuBar()->hide();
  lib_.tklGetInternalFormSize(QtForm(&main), width, height);
  EXPECT_EQ(height, main.height() * 15);

  // Outer size (as the window positions count it) = inner + frame.
  int32_t frame_width = 0;
  int32_t frame_height = 0;
  lib_.tklGetFrameSize(frame_width, frame_height);
  const TwipsRect outer = QtForm(&plain)->Placement().bounds;
  lib_.tklGetInternalFormSize(QtForm(&plain), width, height);
  EXPECT_EQ(width + frame_width, outer.width);
  EXPECT_EQ(height + frame_height, outer.height);
}

TEST_F(QtWindowsTest, AFormIsKeptOnTopAndStaysShown) {
  QWidget window;
  window.setObjectName("frmTool");
  const auto form = QtForm(&window);
  // Not shown yet: kept on top once it shows, and not shown by it.
  EXPECT_TRUE(lib_.tklTopMost(form));
  EXPECT_TRUE(OnTop(window));
  EXPECT_FALSE(window.isVisible());
  EXPECT_TRUE(lib_.tklTopMost(form, false));
  EXPECT_FALSE(OnTop(window));

  EXPECT_TRUE(lib_.tklOpenTopMost(form));
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(OnTop(window));
  // Changing the hint of a shown window must not hide it.
  EXPECT_TRUE(lib_.tklTopMost(form, false));
  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(OnTop(window));
}

TEST_F(QtWindowsTest, TheApplicationsShownWindowsAreKeptOnTop) {
  QWidget first;
  QWidget second;
  QWidget hidden;
  first.show();
  second.show();
  EXPECT_EQ(lib_.tklApplicationTopMost(), 2);
  EXPECT_TRUE(OnTop(first));
  EXPECT_TRUE(OnTop(second));
  EXPECT_FALSE(OnTop(hidden));
  EXPECT_EQ(lib_.tklApplicationTopMost(false), 2);
  EXPECT_FALSE(OnTop(first));
  EXPECT_TRUE(first.isVisible() && second.isVisible());

  QWidget opened;
  EXPECT_TRUE(lib_.tklOpenApplicationTopMost(QtForm(&opened)));
  EXPECT_TRUE(opened.isVisible());
  EXPECT_TRUE(OnTop(opened));
  EXPECT_TRUE(OnTop(first));
  EXPECT_FALSE(OnTop(hidden));
  lib_.tklApplicationTopMost(false);
}

TEST_F(QtWindowsTest, AWindowThatIsGoneIsNeitherShownNorKeptOnTop) {
  auto gone = std::make_unique<QWidget>();
  const auto form = QtForm(gone.get());
  gone.reset();
  EXPECT_FALSE(lib_.tklTopMost(form));
  EXPECT_FALSE(lib_.tklOpenTopMost(form));
  int32_t width = 5;
  int32_t height = 5;
  lib_.tklGetInternalFormSize(form, width, height);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
}

TEST_F(QtWindowsTest, RoundCornersFollowTheWindowsSize) {
  QWidget window;
  window.resize(200, 100);
  EXPECT_TRUE(lib_.tklRoundWindow(QtForm(&window), 20 * 15));
  EXPECT_EQ(qt::RoundCornerRadius(window), 20);
  const auto covers = [&](int x, int y) { return window.mask().contains(QPoint(x, y)); };
  EXPECT_FALSE(covers(0, 0));  // the corner is cut
  EXPECT_FALSE(covers(199, 99));
  EXPECT_TRUE(covers(100, 50));  // the middle
  EXPECT_TRUE(covers(20, 0));    // where the straight edge begins
  EXPECT_TRUE(covers(0, 50));
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  window.resize(400, 300);
  EXPECT_FALSE(covers(399, 299));  // the new corner is cut too
  EXPECT_TRUE(covers(350, 150));   // and the larger window shows whole
  EXPECT_TRUE(lib_.tklRoundWindow(QtForm(&window), 0));
  EXPECT_TRUE(window.mask().isEmpty());
  EXPECT_EQ(qt::RoundCornerRadius(window), 0);
}

TEST_F(QtWindowsTest, TheShadowFollowsItsWindow) {
  QWidget window;
  window.setWindowFlag(Qt::FramelessWindowHint);
  window.setGeometry(100, 80, 200, 120);
  EXPECT_TRUE(lib_.tklWindowShadow(QtForm(&window)));
  QWidget* shadow = qt::DropShadowOf(window);
  ASSERT_NE(shadow, nullptr);
  EXPECT_FALSE(shadow->isVisible());  // the window is not shown yet
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_TRUE(shadow->isVisible());
  const auto expected = [&] {
    const QRect frame = window.frameGeometry();
    return frame.adjusted(-qt::kShadowBlur + qt::kShadowOffset,
                          -qt::kShadowBlur + qt::kShadowOffset, qt::kShadowBlur + qt::kShadowOffset,
                          qt::kShadowBlur + qt::kShadowOffset);
  };
  EXPECT_EQ(shadow->geometry(), expected());
  window.move(300, 200);
  window.resize(260, 150);
  QCoreApplication::processEvents();
  EXPECT_EQ(shadow->geometry(), expected());
  EXPECT_FALSE(shadow->focusPolicy() != Qt::NoFocus && shadow->isActiveWindow());
  window.hide();
  EXPECT_FALSE(shadow->isVisible());
  // Asked twice, one shadow; removed, it is gone.
  EXPECT_TRUE(lib_.tklWindowShadow(QtForm(&window)));
  EXPECT_EQ(qt::DropShadowOf(window), shadow);
  QPointer<QWidget> watched(shadow);
  EXPECT_TRUE(lib_.tklWindowShadow(QtForm(&window), false));
  EXPECT_EQ(qt::DropShadowOf(window), nullptr);
  EXPECT_TRUE(watched.isNull());
}

// The picture a person looks at: a rounded, shadowed window on a light
// desktop, composed from the shadow window and the masked form as the
// window system stacks them.
TEST_F(QtWindowsTest, ARoundShadowedWindowLooksSo) {
  QWidget window;
  window.setWindowFlag(Qt::FramelessWindowHint);
  window.setStyleSheet("background: #2b6cb0; color: white;");
  QLabel label("Rounded and shadowed", &window);
  label.move(40, 50);
  window.setGeometry(60, 60, 260, 140);
  ASSERT_TRUE(lib_.tklRoundWindow(QtForm(&window), 18 * 15));
  ASSERT_TRUE(lib_.tklWindowShadow(QtForm(&window)));
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  QWidget* shadow = qt::DropShadowOf(window);
  ASSERT_NE(shadow, nullptr);

  QImage desktop(400, 280, QImage::Format_ARGB32);
  desktop.fill(QColor(0xf0, 0xf0, 0xf0));
  {
    QPainter painter(&desktop);
    const QPoint origin(20, 20);
    painter.drawPixmap(shadow->geometry().topLeft() - origin, shadow->grab());
    painter.setClipRegion(window.mask().translated(window.geometry().topLeft() - origin));
    painter.drawPixmap(window.geometry().topLeft() - origin, window.grab());
  }
  if (const char* out = std::getenv("NORVIK50_WINDOW_PICTURE")) desktop.save(out);
  const QPoint at = window.geometry().topLeft() - QPoint(20, 20);
  const auto gray = [&](QPoint p) { return qGray(desktop.pixel(p)); };
  // Inside: the window's colour; the cut corner shows the desktop; below
  // and to the right the shadow darkens it, above and to the left not.
  EXPECT_EQ(desktop.pixelColor(at + QPoint(130, 70)), QColor(0x2b, 0x6c, 0xb0));
  EXPECT_GT(gray(at + QPoint(1, 1)), 200);
  EXPECT_LT(gray(at + QPoint(130, 140 + 3)), gray(at + QPoint(130, -3)));
  EXPECT_LT(gray(at + QPoint(260 + 3, 70)), gray(at + QPoint(-3, 70)));
  EXPECT_GT(gray(at + QPoint(130, 140 + qt::kShadowBlur + qt::kShadowOffset + 2)), 235);
}

TEST_F(QtWindowsTest, VirtualKeyCodesNameQtKeys) {
  struct Case {
    int32_t code;
    int key;
    bool keypad;
  };
  const Case keys[] = {
      {0x41, Qt::Key_A, false},      {0x5A, Qt::Key_Z, false},      {0x30, Qt::Key_0, false},
      {0x39, Qt::Key_9, false},      {0x60, Qt::Key_0, true},       {0x69, Qt::Key_9, true},
      {0x70, Qt::Key_F1, false},     {0x87, Qt::Key_F24, false},    {0x0D, Qt::Key_Return, false},
      {0x1B, Qt::Key_Escape, false}, {0x2E, Qt::Key_Delete, false}, {0x6B, Qt::Key_Plus, true},
      {0xBB, Qt::Key_Plus, false},   {0x25, Qt::Key_Left, false},   {0x5B, Qt::Key_Super_L, false},
  };
  for (const Case& c : keys) {
    const auto key = qt::FromVirtualKeyCode(c.code);
    ASSERT_TRUE(key) << c.code;
    EXPECT_EQ(key->key, c.key) << c.code;
    EXPECT_EQ(key->keypad, c.keypad) << c.code;
    EXPECT_EQ(key->button, Qt::NoButton) << c.code;
  }
  EXPECT_EQ(qt::FromVirtualKeyCode(0x04)->button, Qt::MiddleButton);
  EXPECT_EQ(qt::FromVirtualKeyCode(0x06)->button, Qt::ForwardButton);
  EXPECT_EQ(qt::FromVirtualKeyCode(0xA3)->modifier, Qt::ControlModifier);
  EXPECT_EQ(qt::FromVirtualKeyCode(0x12)->modifier, Qt::AltModifier);
  // No fixed key on Linux: the layout's punctuation, IME and media keys.
  for (int32_t code : {0x03, 0x07, 0x15, 0x3A, 0x40, 0x5F, 0x88, 0xAD, 0xBA, 0xDE, 0xFE}) {
    EXPECT_FALSE(qt::FromVirtualKeyCode(code)) << code;
  }
}

TEST_F(QtWindowsTest, KeysAreDownWhileTheWindowHoldsThem) {
  QLineEdit window;
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_FALSE(lib_.tklIsKeyDown(0x41));
  QTest::keyPress(&window, Qt::Key_A);
  EXPECT_TRUE(lib_.tklIsKeyDown(0x41));
  EXPECT_FALSE(lib_.tklIsKeyDown(0x42));
  EXPECT_FALSE(lib_.tklIsKeyDown(0x61));  // the keypad's 1 is another key
  QTest::keyPress(&window, Qt::Key_1, Qt::KeypadModifier);
  EXPECT_TRUE(lib_.tklIsKeyDown(0x61));
  EXPECT_FALSE(lib_.tklIsKeyDown(0x31));
  // Both Enter keys are the one Return code.
  QTest::keyPress(&window, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_TRUE(lib_.tklIsKeyDown(0x0D));
  QTest::keyRelease(&window, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_FALSE(lib_.tklIsKeyDown(0x0D));
  QTest::keyRelease(&window, Qt::Key_A);
  QTest::keyRelease(&window, Qt::Key_1, Qt::KeypadModifier);
  EXPECT_FALSE(lib_.tklIsKeyDown(0x41));
  EXPECT_FALSE(lib_.tklIsKeyDown(0x61));
  // Shift, either side.
  QTest::keyPress(&window, Qt::Key_Shift);
  EXPECT_TRUE(lib_.tklIsKeyDown(0x10));
  EXPECT_TRUE(lib_.tklIsKeyDown(0xA1));
  QTest::keyRelease(&window, Qt::Key_Shift);
  EXPECT_FALSE(lib_.tklIsKeyDown(0x10));
  // A key still held when the application is left counts as released.
  QTest::keyPress(&window, Qt::Key_F5);
  EXPECT_TRUE(lib_.tklIsKeyDown(0x74));
  QApplicationStateChangeEvent left(Qt::ApplicationInactive);
  QCoreApplication::sendEvent(qApp, &left);
  EXPECT_FALSE(lib_.tklIsKeyDown(0x74));
}

TEST_F(QtWindowsTest, MouseButtonsAreDownWhileTheWindowHoldsThem) {
  QWidget window;
  window.resize(100, 100);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_FALSE(lib_.tklIsMouseButtonDown());
  QTest::mousePress(&window, Qt::RightButton, {}, QPoint(10, 10));
  EXPECT_TRUE(lib_.tklIsMouseButtonDown(2));
  EXPECT_TRUE(lib_.tklIsMouseButtonDown(1 + 2));
  EXPECT_FALSE(lib_.tklIsMouseButtonDown(1));
  EXPECT_TRUE(lib_.tklIsKeyDown(0x02));
  QTest::mouseRelease(&window, Qt::RightButton, {}, QPoint(10, 10));
  EXPECT_FALSE(lib_.tklIsMouseButtonDown(2));
}

TEST_F(QtWindowsTest, TheFontListHoldsTheFontsQtCanUse) {
  const SafeArray fonts = lib_.tklGetFontList();
  ASSERT_GT(fonts.size(), 0u);
  EXPECT_EQ(fonts.lbound(), 0);
  EXPECT_EQ(fonts.element_type(), VarType::kString);
  QStringList listed;
  for (const Variant& family : fonts.items()) {
    listed.push_back(QString::fromStdU16String(family.as_string()));
  }
  // Each is a family a form's font may be set to: an installed one, or an
  // alias (Sans Serif) that resolves to one listed; none private.
  for (const QString& family : listed) {
    EXPECT_TRUE(QFontDatabase::hasFamily(family) ||
                listed.contains(QFontInfo(QFont(family)).family()))
        << family.toStdString();
    EXPECT_FALSE(QFontDatabase::isPrivateFamily(family)) << family.toStdString();
  }
  EXPECT_TRUE(listed.contains(QFontInfo(qt::DialogFont()).family()))
      << QFontInfo(qt::DialogFont()).family().toStdString();
}

}  // namespace
}  // namespace norvik50
