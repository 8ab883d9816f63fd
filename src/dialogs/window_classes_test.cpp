// Windows found by class and title, waits for a class to come and go, and
// the pointer confinement's owner, on a desktop the tests describe.
#include "dialogs/window_classes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <functional>

#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

TopLevelWindow Window(int64_t id, std::u16string instance, std::u16string class_name,
                      std::u16string title = u"") {
  return {id, std::move(instance), std::move(class_name), std::move(title)};
}

TEST(WindowClassMatch, EitherPartOfTheClassAndTheTitleWithoutCase) {
  const TopLevelWindow editor = Window(7, u"editor", u"Editor", u"Bericht – Übersicht");
  struct Case {
    std::u16string_view class_name;
    std::u16string_view title;
    bool matches;
  };
  const Case cases[] = {
      {u"Editor", u"", true},  // the class part
      {u"editor", u"", true},  // the instance part
      {u"EDITOR", u"", true},  // without case
      {u"Edito", u"", false},  // whole names only
      {u"Editor ", u"", false},
      {u"XTerm", u"", false},
      {u"", u"bericht – übersicht", true},        // the title alone, umlauts folded
      {u"editor", u"Bericht – Übersicht", true},  // the title narrows the class
      {u"editor", u"Bericht", false},             // a part of a title is not the title
      {u"xterm", u"Bericht – Übersicht", false},  // both must hold
      {u"", u"", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(WindowMatches(editor, c.class_name, c.title), c.matches)
        << std::string(c.class_name.begin(), c.class_name.end()) << " / " << c.title.size();
  }
  // A window without a class is found by its title only.
  const TopLevelWindow bare = Window(8, u"", u"", u"Splash");
  EXPECT_FALSE(WindowMatches(bare, u"Splash", u""));
  EXPECT_TRUE(WindowMatches(bare, u"", u"splash"));
}

TEST(WindowClassMatch, TheTopMostOfSeveralIsFound) {
  const std::vector<TopLevelWindow> windows = {Window(3, u"xterm", u"XTerm", u"top"),
                                               Window(4, u"editor", u"Editor", u"a"),
                                               Window(5, u"editor", u"Editor", u"b")};
  ASSERT_NE(FindMatchingWindow(windows, u"Editor", u""), nullptr);
  EXPECT_EQ(FindMatchingWindow(windows, u"Editor", u"")->id, 4);
  EXPECT_EQ(FindMatchingWindow(windows, u"editor", u"B")->id, 5);
  EXPECT_EQ(FindMatchingWindow(windows, u"Editor", u"top"), nullptr);
  EXPECT_EQ(FindMatchingWindow({}, u"Editor", u""), nullptr);
}

// A desktop whose windows change as the looks at it go by: `at_look(n)`
// answers the windows of the n-th look (from 1). Events processed and
// confinements asked for are counted.
class ChangingDesktop final : public UserInterface {
 public:
  std::optional<std::vector<TopLevelWindow>> TopLevelWindows() override {
    ++looks;
    return at_look(looks);
  }
  void ProcessEvents() override { ++events; }
  bool ConfinePointer(const std::optional<TwipsRect>& area) override {
    areas.push_back(area);
    return !area || confinable;
  }
  std::function<std::vector<TopLevelWindow>(int)> at_look = [](int) {
    return std::vector<TopLevelWindow>{};
  };
  int looks = 0;
  int events = 0;
  bool confinable = true;
  std::vector<std::optional<TwipsRect>> areas;
};

// The class "Viewer" is on the desktop from look `from` until look `until`.
std::function<std::vector<TopLevelWindow>(int)> ViewerBetween(int from, int until) {
  return [from, until](int look) {
    std::vector<TopLevelWindow> windows = {Window(2, u"xterm", u"XTerm")};
    if (look >= from && look < until) windows.push_back(Window(0x1200007, u"viewer", u"Viewer"));
    return windows;
  };
}

class WindowClassesTest : public ::testing::Test {
 protected:
  WindowClassesTest() { SetUserInterface(desktop_); }
  ~WindowClassesTest() override { SetUserInterface(nullptr); }
  std::shared_ptr<ChangingDesktop> desktop_ = std::make_shared<ChangingDesktop>();
  LIB lib_;
};

TEST_F(WindowClassesTest, FindWindowAnswersTheIdOfTheTopMostMatch) {
  desktop_->at_look = [](int) {
    return std::vector<TopLevelWindow>{Window(0x400001, u"office", u"Office", u"Brief"),
                                       Window(0x600003, u"viewer", u"Viewer", u"Rechnung 12"),
                                       Window(0x600009, u"viewer", u"Viewer", u"Rechnung 13")};
  };
  EXPECT_EQ(lib_.tklFindWindow(u"viewer"), 0x600003);
  EXPECT_EQ(lib_.tklFindWindow(u"Viewer", u"rechnung 13"), 0x600009);
  EXPECT_EQ(lib_.tklFindWindow(u"", u"Brief"), 0x400001);
  EXPECT_EQ(lib_.tklFindWindow(u"Viewer", u"Brief"), 0);
  EXPECT_EQ(lib_.tklFindWindow(u"Calculator"), 0);
  EXPECT_EQ(ErrorOf([&] { lib_.tklFindWindow(u"", u""); }), kErrInvalidCall);
}

TEST_F(WindowClassesTest, AnIdTooWideForALongOverflows) {
  desktop_->at_look = [](int) {
    return std::vector<TopLevelWindow>{Window(int64_t{INT32_MAX} + 1, u"wide", u"Wide")};
  };
  EXPECT_EQ(ErrorOf([&] { lib_.tklFindWindow(u"Wide"); }), kErrOverflow);
}

TEST_F(WindowClassesTest, StartedWaitsUntilTheClassAppearsProcessingEvents) {
  desktop_->at_look = ViewerBetween(4, 1000);
  EXPECT_TRUE(lib_.tklWaitForClassStarted(u"Viewer", 5000));
  EXPECT_EQ(desktop_->looks, 4);
  // Between every two looks the host's events were processed.
  EXPECT_EQ(desktop_->events, 3);
}

TEST_F(WindowClassesTest, FinishedWaitsUntilNoWindowOfTheClassIsLeft) {
  desktop_->at_look = ViewerBetween(1, 3);
  EXPECT_TRUE(lib_.tklWaitForClassFinished(u"viewer", 5000));
  EXPECT_EQ(desktop_->looks, 3);
}

TEST_F(WindowClassesTest, AWaitThatIsAlreadyMetLooksOnce) {
  desktop_->at_look = ViewerBetween(1, 1000);
  EXPECT_TRUE(lib_.tklWaitForClassStarted(u"Viewer", 5000));
  EXPECT_FALSE(lib_.tklWaitForClassFinished(u"Viewer", 0));
  EXPECT_EQ(desktop_->looks, 2);
  EXPECT_EQ(desktop_->events, 0);
  // A class that never ran has finished.
  EXPECT_TRUE(lib_.tklWaitForClassFinished(u"Calculator", 5000));
}

TEST_F(WindowClassesTest, ALimitOfZeroOrLessLooksOnce) {
  desktop_->at_look = ViewerBetween(2, 1000);
  for (const int32_t limit : {0, -1, INT32_MIN}) {
    desktop_->looks = 0;
    EXPECT_FALSE(lib_.tklWaitForClassStarted(u"Viewer", limit)) << limit;
    EXPECT_EQ(desktop_->looks, 1) << limit;
    EXPECT_EQ(desktop_->events, 0) << limit;
  }
}

TEST_F(WindowClassesTest, AWaitEndsFalseWhenItsLimitPasses) {
  desktop_->at_look = ViewerBetween(1, 1'000'000);  // never goes
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(lib_.tklWaitForClassFinished(u"Viewer", 100));
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited, std::chrono::milliseconds(100));
  // It looked again and again in between, not once at the start and once
  // at the end.
  EXPECT_GE(desktop_->looks, 3);
  EXPECT_LE(desktop_->looks, 100 / kClassPollMilliseconds + 2);
}

TEST_F(WindowClassesTest, AWaitNeedsAClassAndALimitOfAtMostAnHour) {
  EXPECT_EQ(ErrorOf([&] { lib_.tklWaitForClassStarted(u"", 100); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklWaitForClassFinished(u"", 100); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklWaitForClassStarted(u"Viewer", 3'600'001); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklWaitForClassFinished(u"Viewer", INT32_MAX); }), kErrInvalidCall);
  // Refused before the desktop was looked at.
  EXPECT_EQ(desktop_->looks, 0);
}

TEST(WindowClassesHeadless, WithoutAWindowSystemThatShowsOthersWindowsTheyAreNotAvailable) {
  LIB lib;
  for (const auto& call : std::vector<std::function<void()>>{
           [&] { lib.tklFindWindow(u"XTerm"); }, [&] { lib.tklWaitForClassStarted(u"XTerm", 0); },
           [&] { lib.tklWaitForClassFinished(u"XTerm", 100); }}) {
    try {
      call();
      ADD_FAILURE() << "no error raised";
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), kErrNoSuchMember);
      EXPECT_EQ(e.description().rfind(u"not available on this platform: ", 0), 0u);
    }
  }
  // Releasing a pointer nobody confined succeeds; confining it does not.
  EXPECT_TRUE(lib.tklClipCursor());
  EXPECT_FALSE(lib.tklClipCursor(0, 0, 1500, 1500));
}

TEST_F(WindowClassesTest, ClipCursorConfinesToTheRectangleAndAnEmptyOneReleases) {
  EXPECT_TRUE(lib_.tklClipCursor(1500, 3000, 4500, 1500));
  ASSERT_EQ(desktop_->areas.size(), 1u);
  EXPECT_EQ(desktop_->areas[0], (TwipsRect{1500, 3000, 4500, 1500}));
  EXPECT_TRUE(lib_.tklClipCursor(1500, 3000, 0, 1500));
  EXPECT_TRUE(lib_.tklClipCursor(1500, 3000, 4500, 0));
  EXPECT_TRUE(lib_.tklClipCursor());
  ASSERT_EQ(desktop_->areas.size(), 4u);
  for (std::size_t i = 1; i < 4; ++i) EXPECT_EQ(desktop_->areas[i], std::nullopt) << i;
  // Left and top may lie left of and above the primary screen.
  EXPECT_TRUE(lib_.tklClipCursor(-19200, -300, 600, 600));
  EXPECT_EQ(desktop_->areas.back(), (TwipsRect{-19200, -300, 600, 600}));
}

TEST_F(WindowClassesTest, ClipCursorRefusesANegativeSizeAndAnOverlongRectangle) {
  EXPECT_EQ(ErrorOf([&] { lib_.tklClipCursor(0, 0, -1, 1500); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklClipCursor(0, 0, 1500, -1); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklClipCursor(INT32_MAX - 10, 0, 100, 1500); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklClipCursor(0, INT32_MAX - 10, 1500, 100); }), kErrInvalidCall);
  EXPECT_TRUE(desktop_->areas.empty());
}

TEST_F(WindowClassesTest, ThePointerGoesFreeWithTheLibThatConfinedIt) {
  {
    LIB host;
    EXPECT_TRUE(host.tklClipCursor(0, 0, 3000, 3000));
  }
  ASSERT_EQ(desktop_->areas.size(), 2u);
  EXPECT_EQ(desktop_->areas[1], std::nullopt);
}

TEST_F(WindowClassesTest, AnotherLibGoingAwayLeavesTheConfinementAlone) {
  EXPECT_TRUE(lib_.tklClipCursor(0, 0, 3000, 3000));
  {
    LIB other;
    // It confined and released the pointer itself: holding nothing after.
    EXPECT_TRUE(other.tklClipCursor(0, 0, 1500, 1500));
    EXPECT_TRUE(lib_.tklClipCursor(0, 0, 3000, 3000));
  }
  // Only the three confinements: `other` held none when it went.
  EXPECT_EQ(desktop_->areas.size(), 3u);
  for (const auto& area : desktop_->areas) EXPECT_TRUE(area.has_value());
}

TEST_F(WindowClassesTest, AFailedConfinementLeavesNothingToRelease) {
  desktop_->confinable = false;
  {
    LIB host;
    EXPECT_FALSE(host.tklClipCursor(0, 0, 3000, 3000));
  }
  EXPECT_EQ(desktop_->areas.size(), 1u);
}

TEST_F(WindowClassesTest, ByName) {
  desktop_->at_look = ViewerBetween(2, 1000);
  auto r = Invoke(lib_, "tklFindWindow", {Variant(u"viewer")});
  EXPECT_EQ(r.result->as_long(), 0);
  r = Invoke(lib_, "tklWaitForClassStarted", {Variant(u"Viewer"), Variant(int32_t{2000})});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  r = Invoke(lib_, "tklFindWindow", {Variant(u"Viewer"), Variant(u"")});
  EXPECT_EQ(r.result->as_long(), 0x1200007);
  r = Invoke(lib_, "tklWaitForClassFinished", {Variant(u"Viewer"), Variant(int32_t{0})});
  EXPECT_EQ(r.result->as_boolean(), kFalse);
  r = Invoke(
      lib_, "tklClipCursor",
      {Variant(int32_t{150}), Variant(int32_t{300}), Variant(int32_t{450}), Variant(int32_t{600})});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(desktop_->areas.back(), (TwipsRect{150, 300, 450, 600}));
  r = Invoke(lib_, "tklClipCursor", {});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(desktop_->areas.back(), std::nullopt);
}

}  // namespace
}  // namespace norvik50
