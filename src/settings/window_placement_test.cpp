// Where a stored window comes back on today's desktop.
#include "settings/window_placement.h"

#include <gtest/gtest.h>

#include <climits>

namespace norvik50::settings {
namespace {

// Two monitors side by side, 1920 x 1080 pixels each, as twips; the right
// one 30 pixels shorter for a panel at its top.
const TwipsRect kLeftScreen{0, 0, 28800, 16200};
const TwipsRect kRightScreen{28800, 450, 28800, 15750};

TEST(KeepOnScreensTest, AWindowOnAScreenStaysWhereItIs) {
  const std::vector<TwipsRect> both = {kLeftScreen, kRightScreen};
  const TwipsRect cases[] = {
      {1500, 1500, 9000, 6000},    // well inside the left screen
      {27000, 3000, 9000, 6000},   // across the border of the two
      {-8400, 3000, 9000, 6000},   // mostly off to the left, 600 twips still shown
      {40000, 15600, 9000, 6000},  // its caption in the right screen's last 600 twips
      {1000, 1000, 300, 300},      // smaller than the minimum, and wholly shown
  };
  for (const TwipsRect& window : cases) {
    EXPECT_EQ(KeepOnScreens(window, both), window) << window.left << "," << window.top;
  }
}

TEST(KeepOnScreensTest, AWindowOffEveryScreenMovesOntoTheNearest) {
  const std::vector<TwipsRect> both = {kLeftScreen, kRightScreen};
  struct Case {
    const char* what;
    TwipsRect window;
    TwipsRect expected;
  };
  const Case cases[] = {
      {"far right of the right screen: to its right edge",
       {90000, 3000, 9000, 6000},
       {48600, 3000, 9000, 6000}},
      {"left of the left screen: to its left edge",
       {-20000, 2000, 9000, 6000},
       {0, 2000, 9000, 6000}},
      {"below the right screen: up to its bottom",
       {35000, 30000, 9000, 6000},
       {35000, 10200, 9000, 6000}},
      {"only 300 twips showing on the left: the minimum is 600",
       {-8700, 3000, 9000, 6000},
       {0, 3000, 9000, 6000}},
      {"caption above the screens, body on them: down to the top",
       {3000, -1000, 9000, 6000},
       {3000, 0, 9000, 6000}},
      {"caption above the right screen's panel",
       {30000, 100, 9000, 6000},
       {30000, 450, 9000, 6000}},
      {"larger than the nearest screen: shrunk to it",
       {70000, 0, 40000, 20000},
       {28800, 450, 28800, 15750}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(KeepOnScreens(c.window, both), c.expected) << c.what;
    EXPECT_TRUE(IsOnAScreen(KeepOnScreens(c.window, both), both)) << c.what;
  }
}

TEST(KeepOnScreensTest, TheSecondMonitorLeftAtHome) {
  // Stored on the right monitor; today only the left one is there.
  const TwipsRect stored{40000, 3000, 9000, 6000};
  EXPECT_EQ(KeepOnScreens(stored, {kLeftScreen}), (TwipsRect{19800, 3000, 9000, 6000}));
  // With both, it stays.
  EXPECT_EQ(KeepOnScreens(stored, {kLeftScreen, kRightScreen}), stored);
}

TEST(KeepOnScreensTest, UnknownOrEmptyScreensKeepThePositionAsStored) {
  const TwipsRect far{-90000, -90000, 9000, 6000};
  EXPECT_EQ(KeepOnScreens(far, {}), far);
  // A screen without room counts for nothing.
  EXPECT_EQ(KeepOnScreens(far, {TwipsRect{0, 0, 0, 16200}}), far);
  EXPECT_EQ(KeepOnScreens(far, {TwipsRect{0, 0, 0, 16200}, kRightScreen}),
            (TwipsRect{28800, 450, 9000, 6000}));
}

TEST(KeepOnScreensTest, ExtremeStoredValuesNeitherWrapNorOverflow) {
  const std::vector<TwipsRect> left = {kLeftScreen};
  EXPECT_EQ(KeepOnScreens({INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, left), kLeftScreen);
  EXPECT_EQ(KeepOnScreens({INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX}, left), kLeftScreen);
  EXPECT_EQ(KeepOnScreens({INT32_MAX - 5, 100, 9000, 6000}, left),
            (TwipsRect{19800, 100, 9000, 6000}));
}

}  // namespace
}  // namespace norvik50::settings
