// Whether the mouse is on a control, and the control holding the mouse
// while it is, on a control in memory.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/mouse_pointer.h"
#include "norvik50/text_control.h"

namespace norvik50 {
namespace {

class MouseHolderTest : public ::testing::Test {
 protected:
  MouseHolderTest() {
    button_->width = 1200;
    button_->height = 375;
  }
  std::shared_ptr<MemoryMousePointer> button_ = std::make_shared<MemoryMousePointer>();
  LIB lib_;
};

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

TEST_F(MouseHolderTest, ThePointIsOnTheControlFromItsCornerUpToBelowItsSize) {
  struct Case {
    float x;
    float y;
    bool on;
  };
  const std::vector<Case> cases = {
      {0, 0, true},          // the top left corner
      {1199.9f, 374.9f, true},
      {1200, 10, false},     // the right edge is the next control's
      {10, 375, false},      // and so is the bottom edge
      {-0.5f, 10, false},    // left of it
      {10, -15, false},      // above it
      {kNaN, 10, false},     // no point at all
      {10, kNaN, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(lib_.tklCheckMouseMove(button_, c.x, c.y), c.on) << c.x << "," << c.y;
    EXPECT_EQ(button_->holds_mouse, c.on) << c.x << "," << c.y;
    button_->holds_mouse = false;
    EXPECT_EQ(lib_.tklCheckMouseDown(button_, c.x, c.y), c.on) << c.x << "," << c.y;
  }
}

TEST_F(MouseHolderTest, AMoveOnTakesHoldAndTheMoveOffLetsGo) {
  EXPECT_TRUE(lib_.tklCheckMouseMove(button_, 600, 100));
  EXPECT_TRUE(button_->holds_mouse);
  EXPECT_TRUE(lib_.tklCheckMouseMove(button_, 700, 100));
  EXPECT_TRUE(button_->holds_mouse);
  EXPECT_FALSE(lib_.tklCheckMouseMove(button_, 1500, 100));
  EXPECT_FALSE(button_->holds_mouse);
}

TEST_F(MouseHolderTest, APressNeverTakesHoldAndOneOffTheControlLetsGo) {
  EXPECT_TRUE(lib_.tklCheckMouseDown(button_, 10, 10));
  EXPECT_FALSE(button_->holds_mouse);
  button_->holds_mouse = true;  // held since the pointer came on
  EXPECT_TRUE(lib_.tklCheckMouseDown(button_, 10, 10));
  EXPECT_TRUE(button_->holds_mouse);  // still on: the hold stays
  EXPECT_FALSE(lib_.tklCheckMouseDown(button_, 10, 400));
  EXPECT_FALSE(button_->holds_mouse);
}

TEST_F(MouseHolderTest, AControlWithoutSizeHasNoPointOnIt) {
  auto empty = std::make_shared<MemoryMousePointer>();
  EXPECT_FALSE(lib_.tklCheckMouseMove(empty, 0, 0));
  EXPECT_FALSE(empty->holds_mouse);
}

TEST_F(MouseHolderTest, WhatCannotHoldTheMouseIsRefused) {
  for (const std::shared_ptr<HostObject>& object :
       {std::shared_ptr<HostObject>(), std::shared_ptr<HostObject>(
                                           std::make_shared<MemoryTextBox>())}) {
    for (const bool move : {true, false}) {
      try {
        move ? lib_.tklCheckMouseMove(object, 1, 1) : lib_.tklCheckMouseDown(object, 1, 1);
        ADD_FAILURE() << "no error";
      } catch (const Error& e) {
        EXPECT_EQ(e.number(), kErrInvalidCall);
      }
    }
  }
}

TEST_F(MouseHolderTest, ByNameTheControlComesBackWithItsHold) {
  // Coordinates as a host's handler passes them: Singles, or text in the
  // current locale.
  auto r = Invoke(lib_, "tklCheckMouseMove",
                  {Variant(std::shared_ptr<HostObject>(button_)), Variant(10.5f), Variant(u"20")});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(r.by_ref.count(0), 1u);
  EXPECT_TRUE(button_->holds_mouse);
  r = Invoke(lib_, "tklCheckMouseDown",
             {Variant(std::shared_ptr<HostObject>(button_)), Variant(int32_t{5000}),
              Variant(int32_t{20})});
  EXPECT_EQ(r.result->as_boolean(), kFalse);
  EXPECT_FALSE(button_->holds_mouse);
  for (const char* member : {"tklCheckMouseMove", "tklCheckMouseDown"}) {
    const MemberInfo* info = Members().Find(member, MemberKind::kMethod);
    ASSERT_NE(info, nullptr) << member;
    EXPECT_TRUE(info->designed_here) << member;
    EXPECT_EQ(FindUnavailableMember(member), nullptr) << member;
  }
}

}  // namespace
}  // namespace norvik50
