// The tab-frame and grid helpers on strips, frames and grids held in
// memory.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "norvik50/error.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using ::norvik50::testing::ErrorOf;

std::shared_ptr<MemoryTabStrip> StripOf(int tabs, int32_t selected) {
  auto strip = std::make_shared<MemoryTabStrip>();
  for (int i = 0; i < tabs; ++i) strip->Tabs().Add(std::nullopt, u"", u"tab");
  strip->selected = selected;
  return strip;
}

std::shared_ptr<MemoryTabFrames> FramesOf(std::vector<bool> visible) {
  auto frames = std::make_shared<MemoryTabFrames>();
  for (bool v : visible) frames->frames.push_back({u"fra", v});
  return frames;
}

std::vector<bool> Visible(const MemoryTabFrames& frames) {
  std::vector<bool> visible;
  for (const auto& frame : frames.frames) visible.push_back(frame.visible);
  return visible;
}

class TabsAndGridsTest : public ::testing::Test {
 protected:
  LIB lib_;
};

TEST_F(TabsAndGridsTest, OnlyTheFrameOfTheTabInFrontShows) {
  struct Case {
    const char* what;
    int tabs;
    int32_t selected;
    std::vector<bool> before;
    int16_t shown;
    std::vector<bool> after;
  };
  const Case cases[] = {
      {"first", 3, 0, {false, true, true}, 0, {true, false, false}},
      {"last", 3, 2, {true, true, false}, 2, {false, false, true}},
      {"already so", 2, 1, {false, true}, 1, {false, true}},
      {"more frames than tabs", 1, 0, {false, true, true}, 0, {true, false, false}},
      {"no tab in front", 2, -1, {true, true}, -1, {false, false}},
      {"no tabs at all", 0, 0, {true}, -1, {false}},
  };
  for (const Case& c : cases) {
    const auto frames = FramesOf(c.before);
    EXPECT_EQ(lib_.tklOnTabClick(StripOf(c.tabs, c.selected), frames), c.shown) << c.what;
    EXPECT_EQ(Visible(*frames), c.after) << c.what;
  }
}

TEST_F(TabsAndGridsTest, ATabWithoutAFrameChangesNothing) {
  const auto frames = FramesOf({true, false});
  EXPECT_EQ(ErrorOf([&] { lib_.tklOnTabClick(StripOf(3, 2), frames); }), kErrSubscript);
  EXPECT_EQ(Visible(*frames), (std::vector<bool>{true, false}));
  EXPECT_EQ(ErrorOf([&] { lib_.tklOnTabClick(frames, frames); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklOnTabClick(StripOf(1, 0), StripOf(1, 0)); }), kErrInvalidCall);
}

std::shared_ptr<MemoryGrid> GridOf(int32_t client_width, std::vector<int32_t> widths) {
  auto grid = std::make_shared<MemoryGrid>();
  grid->client_width = client_width;
  for (int32_t w : widths) grid->columns.push_back({w, TextAlignment::kLeft});
  return grid;
}

TEST_F(TabsAndGridsTest, AColumnFillsWhatTheOthersLeave) {
  struct Case {
    const char* what;
    std::vector<int32_t> widths;
    int16_t column;
    int32_t min_width;
    int32_t expected;
  };
  const Case cases[] = {
      {"last by default", {1000, 2000, 500}, -1, 0, 3000},
      {"a middle column", {1000, 2000, 500}, 1, 0, 4500},
      {"the only column", {10}, 0, 0, 6000},
      {"others too wide: nothing left", {4000, 3000, 100}, -1, 0, 0},
      {"others too wide: the minimum", {4000, 3000, 100}, -1, 600, 600},
      {"the minimum below what is left", {1000, 100}, -1, 600, 5000},
  };
  for (const Case& c : cases) {
    const auto grid = GridOf(6000, c.widths);
    EXPECT_EQ(lib_.tklResizeGridCol(grid, c.column, c.min_width), c.expected) << c.what;
    const std::size_t changed = c.column == -1 ? c.widths.size() - 1 : c.column;
    for (std::size_t i = 0; i < c.widths.size(); ++i) {
      EXPECT_EQ(grid->columns[i].width, i == changed ? c.expected : c.widths[i]) << c.what;
    }
  }
}

TEST_F(TabsAndGridsTest, ResizingRefusesBadColumnsAndMinimums) {
  const auto grid = GridOf(6000, {1000, 2000});
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"column past the last", [&] { lib_.tklResizeGridCol(grid, 2); }},
      {"column below -1", [&] { lib_.tklResizeGridCol(grid, -2); }},
      {"no columns at all", [&] { lib_.tklResizeGridCol(GridOf(6000, {})); }},
  };
  for (const auto& [what, call] : cases) EXPECT_EQ(ErrorOf(call), kErrSubscript) << what;
  EXPECT_EQ(ErrorOf([&] { lib_.tklResizeGridCol(grid, -1, -1); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklResizeGridCol(std::make_shared<MemoryList>()); }),
            kErrInvalidCall);
  EXPECT_EQ(grid->columns[1].width, 2000);
}

TEST_F(TabsAndGridsTest, AlignTextSetsOneColumnOrAll) {
  const auto grid = GridOf(6000, {1, 1, 1});
  lib_.tklAlignText(grid, 1, 1);
  EXPECT_EQ(grid->columns[0].alignment, TextAlignment::kLeft);
  EXPECT_EQ(grid->columns[1].alignment, TextAlignment::kRight);
  lib_.tklAlignText(grid, 2);
  for (const auto& column : grid->columns) EXPECT_EQ(column.alignment, TextAlignment::kCenter);
  for (int16_t bad : {-1, 3, 100}) {
    EXPECT_EQ(ErrorOf([&] { lib_.tklAlignText(grid, bad); }), kErrInvalidCall) << bad;
  }
  EXPECT_EQ(ErrorOf([&] { lib_.tklAlignText(grid, 0, 3); }), kErrSubscript);
  for (const auto& column : grid->columns) EXPECT_EQ(column.alignment, TextAlignment::kCenter);
}

}  // namespace
}  // namespace norvik50
