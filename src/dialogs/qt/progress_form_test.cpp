// frmMessage on the offscreen platform through the members: the counter,
// the states, the size the user gives it, its owner and top-most state,
// the event processing of tklSendMessage and tklWait, tklShowWait on a
// widget, the dialog log, and the whole family end to end through
// `norvik50 batch`.
#include <gtest/gtest.h>

#include <QtTest/qtestspontaneevent.h>
#include <QApplication>
#include <QCloseEvent>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <chrono>
#include <fstream>

#include "dialogs/qt/dialog_log_for_tests.h"
#include "dialogs/qt/progress_form.h"
#include "dialogs/qt/qt_application.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;
using norvik50::qt::testing::ReadDialogLog;

// The progress window of the process, when one exists.
ProgressForm* Window() {
  for (QWidget* w : QApplication::topLevelWidgets()) {
    if (auto* form = dynamic_cast<ProgressForm*>(w)) return form;
  }
  return nullptr;
}

double SecondsOf(const std::function<void()>& f) {
  const auto start = std::chrono::steady_clock::now();
  f();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class ProgressWindowTest : public ::testing::Test {
 protected:
  ProgressWindowTest() {
    EnsureApplication();
    InstallQtDialogs();
    SetHostApplication(u"host", u"Host");
    lib_.tklClearMessage();
  }
  ~ProgressWindowTest() override {
    lib_.tklClearMessage();
    SetUserInterface(nullptr);
    SetHostApplication(u"", u"");
  }
  // tklSendMessage with only a prompt.
  void Say(const char16_t* prompt) { lib_.tklSendMessage(Variant(prompt)); }
  void Count(int32_t count) {
    Variant cur(count);
    lib_.tklSendMessage(std::nullopt, std::nullopt, std::nullopt, &cur);
  }

  LIB lib_;
};

TEST_F(ProgressWindowTest, CounterPastTheMaximumFillsTheBar) {
  Variant cur(u"150");
  lib_.tklSendMessage(Variant(u"Kopiere \\b Daten\\b0"), Variant(u"Sicherung"), Variant(true),
                      &cur);
  ProgressForm* form = Window();
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(form->windowTitle(), "Sicherung");
  EXPECT_EQ(form->Message()->toPlainText(), "Kopiere Daten");
  EXPECT_EQ(form->Message()->document()->firstBlock().blockFormat().alignment() &
                Qt::AlignHorizontal_Mask,
            Qt::AlignHCenter);
  EXPECT_TRUE(form->Bar()->isVisible());
  EXPECT_EQ(form->Bar()->maximum(), 150);
  EXPECT_EQ(form->Bar()->value(), 150);
  EXPECT_EQ(cur.type(), VarType::kLong);

  // MaxCount 0 is not above the minimum: the maximum stays.
  Variant max(int32_t{0});
  lib_.tklSendMessage(std::nullopt, std::nullopt, std::nullopt, nullptr, &max);
  EXPECT_EQ(form->Bar()->maximum(), 150);
  // ShowCounter False hides the bar again.
  lib_.tklSendMessage(std::nullopt, std::nullopt, Variant(false));
  EXPECT_FALSE(form->Bar()->isVisible());
}

TEST_F(ProgressWindowTest, TwoPromptsChangeOnlyTheText) {
  Variant cur(int32_t{12});
  lib_.tklSendMessage(Variant(u"eins"), Variant(u"Export"), Variant(true), &cur, nullptr, 0,
                      Variant(int32_t{7200}));
  ProgressForm* form = Window();
  ASSERT_NE(form, nullptr);
  // The user moves the window; it stays there from now on.
  form->move(70, 90);
  const QRect before = form->geometry();
  Say(u"zwei");
  Say(u"drei");
  EXPECT_EQ(form->Message()->toPlainText(), "drei");
  EXPECT_EQ(form->windowTitle(), "Export");
  EXPECT_EQ(form->Bar()->value(), 12);
  EXPECT_TRUE(form->Bar()->isVisible());
  EXPECT_EQ(form->geometry(), before);
  EXPECT_EQ(form->WidthTwips(), 7200);
  // An empty prompt or 0 keeps the message.
  Say(u"");
  lib_.tklSendMessage(Variant(int32_t{0}));
  EXPECT_EQ(form->Message()->toPlainText(), "drei");
}

TEST_F(ProgressWindowTest, HiddenWindowComesBackWithItsText) {
  Say(u"Schritt 1");
  QPointer<ProgressForm> form = Window();
  ASSERT_TRUE(form);
  lib_.tklHideMessage();
  ASSERT_TRUE(form);  // still loaded
  EXPECT_FALSE(form->isVisible());
  Count(5);
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(form->Message()->toPlainText(), "Schritt 1");
  EXPECT_EQ(form->Bar()->value(), 5);
}

TEST_F(ProgressWindowTest, HiddenWindowKeepsItsCaption) {
  lib_.tklSendMessage(Variant(u"Lese"), Variant(u"Import"));
  QPointer<ProgressForm> form = Window();
  ASSERT_TRUE(form);
  lib_.tklHideMessage();
  Say(u"weiter");
  ASSERT_TRUE(form);
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(form->windowTitle(), "Import");
  EXPECT_EQ(form->Message()->toPlainText(), "weiter");
}

TEST_F(ProgressWindowTest, ClearUnloadsAndTheTitleIsTheApplicationsAgain) {
  lib_.tklSendMessage(Variant(u"a"), Variant(u"Import"));
  QPointer<ProgressForm> first = Window();
  ASSERT_TRUE(first);
  lib_.tklClearMessage();
  EXPECT_FALSE(first);
  EXPECT_EQ(Window(), nullptr);
  Count(1);
  ASSERT_NE(Window(), nullptr);
  EXPECT_EQ(Window()->windowTitle(), "Host");
  EXPECT_EQ(Window()->Message()->toPlainText(), "");
  // Hide and clear twice: nothing to do, nothing shown.
  lib_.tklClearMessage();
  lib_.tklClearMessage();
  lib_.tklHideMessage();
  EXPECT_EQ(Window(), nullptr);
}

TEST_F(ProgressWindowTest, LayoutFollowsTheSizeAndTheUsersSizeIsKept) {
  lib_.tklSendMessage(Variant(u"x"), std::nullopt, Variant(true), nullptr, nullptr, 0,
                      Variant(int32_t{9000}), Variant(int32_t{3000}), Variant(int32_t{300}));
  ProgressForm* form = Window();
  ASSERT_NE(form, nullptr);
  // 9000 x 3000 twips outside are 592 x 174 pixels inside the classic frame.
  EXPECT_EQ(form->size(), QSize(592, 174));
  const auto check_layout = [form](const char* when) {
    const QRect bar = form->Bar()->geometry();
    const QRect message = form->Message()->geometry();
    EXPECT_EQ(bar.bottom() + 1, form->height() - 4) << when;  // 60 twips above the bottom
    EXPECT_EQ(bar.left(), ProgressForm::kMargin) << when;
    EXPECT_EQ(bar.width(), form->width() - 2 * ProgressForm::kMargin) << when;
    EXPECT_EQ(message.left(), bar.left()) << when;
    EXPECT_EQ(message.width(), bar.width()) << when;
    EXPECT_EQ(message.top(), 20) << when;  // 300 twips
    EXPECT_LT(message.bottom(), bar.top()) << when;
  };
  check_layout("designed");
  // The user makes it smaller; calls without sizes keep that size.
  form->resize(400, 150);
  check_layout("resized by the user");
  Say(u"y");
  EXPECT_EQ(form->size(), QSize(400, 150));
  // The caller's old width differs from the user's now and is taken again.
  lib_.tklSendMessage(std::nullopt, std::nullopt, std::nullopt, nullptr, nullptr, 0,
                      Variant(int32_t{9000}));
  EXPECT_EQ(form->width(), 592);
  EXPECT_EQ(form->height(), 150);
}

TEST_F(ProgressWindowTest, TopMostAndOwnedByTheActiveWindow) {
  QWidget host;
  host.setWindowTitle(QStringLiteral("host"));
  host.show();
  QApplication::setActiveWindow(&host);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&host));
  // A window id the offscreen platform cannot use: the active window owns it.
  lib_.tklSendMessage(Variant(u"a"), std::nullopt, std::nullopt, nullptr, nullptr, 0x3a00007);
  ProgressForm* form = Window();
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(form->windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(form->Owner(), host.windowHandle());
  EXPECT_FALSE(form->windowFlags() & Qt::WindowCloseButtonHint);

  // Not top-most: an ordinary window of its own.
  lib_.tklClearMessage();
  lib_.tklSendMessage(Variant(u"b"), std::nullopt, std::nullopt, nullptr, nullptr, 0,
                      std::nullopt, std::nullopt, std::nullopt, false, false);
  form = Window();
  ASSERT_NE(form, nullptr);
  EXPECT_FALSE(form->windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(form->Owner(), nullptr);
}

TEST_F(ProgressWindowTest, OnlyTheLibraryClosesItAndTheMessageIsReadOnly) {
  Say(u"bleibt");
  ProgressForm* form = Window();
  ASSERT_NE(form, nullptr);
  QTest::keyClicks(form->Message(), "abc");
  QTest::keyClick(form->Message(), Qt::Key_Delete);
  EXPECT_EQ(form->Message()->toPlainText(), "bleibt");
  // The user's close, as the window system delivers it, is refused.
  QCloseEvent by_user;
  QSpontaneKeyEvent::setSpontaneous(&by_user);
  // Delivered as it comes (sendEvent would mark it the program's own).
  static_cast<QObject*>(form)->event(&by_user);
  EXPECT_FALSE(by_user.isAccepted());
  EXPECT_TRUE(form->isVisible());
}

TEST_F(ProgressWindowTest, TheHostsLoopQuitsWithTheWindowUpAndTheWindowGoesWithIt) {
  lib_.tklSendMessage(Variant(u"Lese"), Variant(u"Import"), Variant(true));
  QPointer<ProgressForm> form = Window();
  ASSERT_TRUE(form);
  // Quitting closes every window first; one that refused would keep the
  // loop running, which the guard ends with 1 instead.
  QTimer::singleShot(0, qApp, &QCoreApplication::quit);
  QTimer guard;
  guard.setSingleShot(true);
  QObject::connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(1); });
  guard.start(10000);
  EXPECT_EQ(QApplication::exec(), 0);
  // Unloaded while the application still existed.
  EXPECT_FALSE(form);
  // The library still holds the window: the next call shows it afresh
  // with its whole state.
  Say(u"weiter");
  ProgressForm* again = Window();
  ASSERT_NE(again, nullptr);
  EXPECT_TRUE(again->isVisible());
  EXPECT_EQ(again->windowTitle(), "Import");
  EXPECT_EQ(again->Message()->toPlainText(), "weiter");
  EXPECT_TRUE(again->Bar()->isVisibleTo(again));
  EXPECT_EQ(again->WidthTwips(), 6000);
}

TEST_F(ProgressWindowTest, NoEventsLeavesTheEventsPending) {
  Say(u"start");
  bool ran = false;
  QTimer::singleShot(0, [&ran] { ran = true; });
  Variant cur(int32_t{1});
  lib_.tklSendMessage(std::nullopt, std::nullopt, std::nullopt, &cur, nullptr, 0, std::nullopt,
                      std::nullopt, std::nullopt, true);
  EXPECT_FALSE(ran);
  EXPECT_EQ(Window()->Bar()->value(), 1);  // the state is shown all the same
  Count(2);
  EXPECT_TRUE(ran);
}

// Counts the paint events of one widget.
class PaintCounter : public QObject {
 public:
  int paints = 0;
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }
};

TEST_F(ProgressWindowTest, ActiveWaitKeepsTheWindowPaintedInactiveDoesNot) {
  lib_.tklSendMessage(Variant(u"warten"), std::nullopt, Variant(true));
  ProgressForm* form = Window();
  ASSERT_NE(form, nullptr);
  QCoreApplication::processEvents();
  PaintCounter counter;
  form->Bar()->installEventFilter(&counter);
  bool timer = false;

  form->Bar()->update();
  QTimer::singleShot(100, [&timer] { timer = true; });
  const double inactive = SecondsOf([&] { lib_.tklWait(500, false); });
  EXPECT_GE(inactive, 0.5);
  EXPECT_LT(inactive, 1.5);
  EXPECT_EQ(counter.paints, 0);
  EXPECT_FALSE(timer);
  QCoreApplication::processEvents();
  EXPECT_TRUE(timer);

  counter.paints = 0;
  timer = false;
  form->Bar()->update();
  QTimer::singleShot(100, [&timer] { timer = true; });
  const double active = SecondsOf([&] { lib_.tklWait(500, true); });
  EXPECT_GE(active, 0.48);
  EXPECT_LT(active, 1.5);
  EXPECT_GT(counter.paints, 0);
  EXPECT_TRUE(timer);
  form->Bar()->removeEventFilter(&counter);
}

TEST(QtMousePointerTest, ShowWaitSetsTheWidgetsCursor) {
  EnsureApplication();
  LIB lib;
  // A window and a control in it: Qt unsets their cursors differently.
  auto window = std::make_unique<QWidget>();
  QWidget* control = new QWidget(window.get());
  for (QWidget* widget : {control, window.get()}) {
    const auto pointer = QtMousePointer(widget);
    EXPECT_EQ(pointer->MousePointer(), 0);
    lib.tklShowWait(pointer, true);
    EXPECT_EQ(widget->cursor().shape(), Qt::WaitCursor);
    EXPECT_EQ(pointer->MousePointer(), 11);
    lib.tklShowWait(pointer, false);
    EXPECT_EQ(widget->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(pointer->MousePointer(), 0);
  }
  EXPECT_FALSE(control->testAttribute(Qt::WA_SetCursor));  // the window's cursor shows through

  // Every standard pointer reads back as the number it was set to, also
  // those that share a shape (5 and 15).
  const auto pointer = QtMousePointer(control);
  for (int16_t n = 1; n <= 15; ++n) {
    pointer->SetMousePointer(n);
    EXPECT_EQ(pointer->MousePointer(), n) << n;
  }
  EXPECT_THROW(pointer->SetMousePointer(99), Error);  // custom: no picture to show
  EXPECT_EQ(pointer->MousePointer(), 15);
  // A pointer set by the host itself reads by its shape.
  control->setCursor(Qt::IBeamCursor);
  EXPECT_EQ(pointer->MousePointer(), 3);

  window.reset();
  EXPECT_EQ(pointer->MousePointer(), 0);
  EXPECT_NO_THROW(lib.tklShowWait(pointer, true));
}

TEST_F(ProgressWindowTest, TheLogRecordsEachShowHideAndUnload) {
  TempFolder temp;
  ScopedEnv log("NORVIK50_DIALOG_LOG", temp.File("log.jsonl"));
  Variant cur(int32_t{30});
  lib_.tklSendMessage(Variant(u"Lese"), Variant(u"Import"), Variant(true), &cur);
  Count(31);  // no line: the window was visible already
  lib_.tklHideMessage();
  Count(32);
  lib_.tklClearMessage();
  const auto lines = ReadDialogLog(temp.File("log.jsonl"));
  ASSERT_EQ(lines.size(), 4u);
  const char* events[] = {"shown", "hidden", "shown", "unloaded"};
  const int counters[] = {30, 31, 32, 32};
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i].value("form").toString(), "frmMessage");
    EXPECT_EQ(lines[i].value("event").toString(), events[i]) << i;
    EXPECT_EQ(lines[i].value("prompt").toString(), "Lese") << i;
    EXPECT_EQ(lines[i].value("counter").toInt(), counters[i]) << i;
    EXPECT_TRUE(lines[i].value("counterVisible").toBool()) << i;
  }
  EXPECT_EQ(lines[0].value("title").toString(), "Import");
  // Shown again after hiding, with its old caption, not the application's.
  EXPECT_EQ(lines[2].value("title").toString(), "Import");
  EXPECT_EQ(lines[0].value("width").toInt(), 6000);
}

TEST(ProgressBatchTest, CountersStatesAndPointerThroughTheBatch) {
  TempFolder temp;
  const std::string env = "QT_QPA_PLATFORM=offscreen NORVIK50_APP_TITLE=Stapel TMPDIR=" +
                          temp.path() + " NORVIK50_REGISTRY_DIR=" + temp.File("reg") +
                          " NORVIK50_DIALOG_LOG=" + temp.File("log.jsonl");
  const std::string requests =
      R"({"id":1,"member":"tklSendMessage","args":["Lese Daten","Import",true,"150",{"vt":"Double","v":99.5}]}
{"id":2,"member":"tklSendMessage","args":[{"missing":true},{"missing":true},{"missing":true},"viel"]}
{"id":3,"member":"tklHideMessage"}
{"id":4,"member":"tklSendMessage","args":[{"missing":true},{"missing":true},{"missing":true},{"vt":"Integer","v":7}]}
{"id":5,"member":"tklClearMessage"}
{"id":6,"member":"tklSendMessage","args":[0,{"missing":true},false,1]}
{"id":7,"member":"tklShowWait","let":true,"args":[{"vt":"Object","type":"MousePointer","v":{"MousePointer":0}},true]}
{"id":8,"member":"tklWait","args":[50,false]}
{"id":9,"member":"tklClearMessage"}
)";
  std::ofstream(temp.File("in.jsonl")) << requests;
  const CommandRun run = RunCommand(env + " " NORVIK50_TOOL " batch < " + temp.File("in.jsonl"));
  ASSERT_EQ(run.status, 0) << run.out;
  std::vector<QJsonObject> answers;
  for (const QByteArray& line : QByteArray::fromStdString(run.out).split('\n')) {
    // Qt's own notes on stderr are not answers.
    if (line.startsWith('{')) answers.push_back(QJsonDocument::fromJson(line).object());
  }
  ASSERT_EQ(answers.size(), 9u) << run.out;
  for (const QJsonObject& a : answers) EXPECT_TRUE(a.value("ok").toBool()) << run.out;
  // The counters come back as Longs; an unreadable one does not come back.
  const QJsonObject byref = answers[0].value("byref").toObject();
  EXPECT_EQ(byref.value("3").toObject().value("vt").toString(), "Long");
  EXPECT_EQ(byref.value("3").toObject().value("v").toInt(), 150);
  EXPECT_EQ(byref.value("4").toObject().value("v").toInt(), 100);
  EXPECT_FALSE(answers[1].contains("byref"));
  EXPECT_EQ(answers[3].value("byref").toObject().value("3").toObject().value("vt").toString(),
            "Long");
  const QJsonObject pointer =
      answers[6].value("byref").toObject().value("0").toObject().value("v").toObject();
  EXPECT_EQ(pointer.value("MousePointer").toInt(), 11);

  const auto log = ReadDialogLog(temp.File("log.jsonl"));
  ASSERT_EQ(log.size(), 6u);
  // Shown with the counter raised to 150; hidden; shown again with its
  // text; unloaded; then the designed form with the application's title.
  EXPECT_EQ(log[0].value("event").toString(), "shown");
  EXPECT_EQ(log[0].value("title").toString(), "Import");
  EXPECT_EQ(log[0].value("counter").toInt(), 150);
  EXPECT_EQ(log[0].value("counterMax").toInt(), 150);
  EXPECT_EQ(log[1].value("event").toString(), "hidden");
  EXPECT_EQ(log[2].value("event").toString(), "shown");
  EXPECT_EQ(log[2].value("prompt").toString(), "Lese Daten");
  EXPECT_EQ(log[2].value("counter").toInt(), 7);
  EXPECT_EQ(log[2].value("title").toString(), "Import");
  EXPECT_EQ(log[3].value("event").toString(), "unloaded");
  EXPECT_EQ(log[4].value("event").toString(), "shown");
  EXPECT_EQ(log[4].value("title").toString(), "Stapel");
  EXPECT_EQ(log[4].value("prompt").toString(), "");
  EXPECT_FALSE(log[4].value("counterVisible").toBool());
  EXPECT_EQ(log[4].value("counterMax").toInt(), 100);
  EXPECT_EQ(log[5].value("event").toString(), "unloaded");

  // Headless: the same answers, nothing shown or logged.
  const CommandRun headless =
      RunCommand(env + " " NORVIK50_TOOL " batch --headless < " + temp.File("in.jsonl"));
  EXPECT_NE(headless.out.find(R"("byref":{"3":{"vt":"Long","v":150},"4":{"vt":"Long","v":100}})"),
            std::string::npos)
      << headless.out;
  EXPECT_EQ(ReadDialogLog(temp.File("log.jsonl")).size(), 6u);
}

}  // namespace
}  // namespace norvik50::qt
