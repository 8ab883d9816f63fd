// The members of the progress window family through LIB and by name:
// tklShowWait against pointer objects that lag or fail, tklWait against
// the real clock (with a tolerance), and the write-back of the counters.
#include <gtest/gtest.h>

#include <chrono>

#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/host.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "norvik50/mouse_pointer.h"

namespace norvik50 {
namespace {

class CountingUi : public UserInterface {
 public:
  void UpdateMessageWindow(const MessageWindowState& state) override { states.push_back(state); }
  void ProcessEvents() override {
    ++pumps;
    if (on_pump) on_pump();
  }
  std::vector<MessageWindowState> states;
  int pumps = 0;
  std::function<void()> on_pump;
};

// A window system's pointer: asked for a pointer, it shows it only after
// `lag` rounds of event processing; `fail` makes every request raise.
class LaggingPointer final : public MousePointerControl {
 public:
  int16_t MousePointer() const override { return shown; }
  void SetMousePointer(int16_t pointer) override {
    if (fail) Raise(kErrInvalidCall);
    requested = pointer;
    remaining = lag;
  }
  // Called once per round of events.
  void Tick() {
    if (remaining > 0 && --remaining == 0) shown = requested;
  }
  int lag = 0;
  bool fail = false;
  int16_t requested = 0;
  int16_t shown = 0;
  int remaining = 0;
};

class MessageMembersTest : public ::testing::Test {
 protected:
  MessageMembersTest() {
    SetUserInterface(ui_);
    lib_.tklClearMessage();
  }
  ~MessageMembersTest() override {
    lib_.tklClearMessage();
    SetUserInterface(nullptr);
  }
  std::shared_ptr<CountingUi> ui_ = std::make_shared<CountingUi>();
  LIB lib_;
};

TEST_F(MessageMembersTest, ShowWaitSetsTheHourglassAndBack) {
  auto memory = std::make_shared<MemoryMousePointer>();
  lib_.tklShowWait(memory, true);
  EXPECT_EQ(memory->MousePointer(), 11);
  lib_.tklShowWait(memory, false);
  EXPECT_EQ(memory->MousePointer(), 0);
  // Nothing, or an object without a pointer: nothing happens, no error.
  EXPECT_NO_THROW(lib_.tklShowWait(nullptr, true));
  EXPECT_NO_THROW(lib_.tklShowWait(std::make_shared<MemoryList>(), true));
}

TEST_F(MessageMembersTest, ShowWaitProcessesEventsUntilThePointerIsShown) {
  auto pointer = std::make_shared<LaggingPointer>();
  ui_->on_pump = [&pointer] { pointer->Tick(); };
  pointer->lag = 3;
  ui_->pumps = 0;
  lib_.tklShowWait(pointer, true);
  EXPECT_EQ(pointer->shown, 11);
  EXPECT_EQ(ui_->pumps, 3);

  // An object that never shows it does not hold the host forever.
  pointer->lag = 1'000'000;
  ui_->pumps = 0;
  lib_.tklShowWait(pointer, false);
  EXPECT_EQ(pointer->shown, 11);
  EXPECT_GT(ui_->pumps, 0);
  EXPECT_LE(ui_->pumps, 1000);

  // A failure ends the member quietly.
  pointer->fail = true;
  ui_->pumps = 0;
  EXPECT_NO_THROW(lib_.tklShowWait(pointer, true));
  EXPECT_EQ(ui_->pumps, 0);
}

double SecondsOf(const std::function<void()>& f) {
  const auto start = std::chrono::steady_clock::now();
  f();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(MessageMembersTest, WaitActiveProcessesEventsInactiveSleeps) {
  // Tolerances are wide: the machine may be busy, and the clock behind
  // the active wait moves in steps of up to 1/128 s.
  const double active = SecondsOf([&] { lib_.tklWait(500, true); });
  EXPECT_GE(active, 0.48);
  EXPECT_LT(active, 1.5);
  EXPECT_GT(ui_->pumps, 10);

  ui_->pumps = 0;
  const double inactive = SecondsOf([&] { lib_.tklWait(500, false); });
  EXPECT_GE(inactive, 0.5);
  EXPECT_LT(inactive, 1.5);
  EXPECT_EQ(ui_->pumps, 0);

  // Nothing to sleep: returns at once, also for a negative time.
  EXPECT_LT(SecondsOf([&] { lib_.tklWait(-1, false); }), 0.1);
}

TEST_F(MessageMembersTest, ByNameTheCountersComeBackAsLongs) {
  const InvokeResult r =
      Invoke(lib_, "tklSendMessage",
             {Variant(u"Copying"), Variant(u"Backup"), Variant(true), Variant(u"150"),
              Variant(99.5), std::nullopt, Variant(u"7000")});
  ASSERT_EQ(r.by_ref.count(3), 1u);
  EXPECT_EQ(r.by_ref.at(3).type(), VarType::kLong);
  EXPECT_EQ(r.by_ref.at(3).as_long(), 150);
  EXPECT_EQ(r.by_ref.at(4).as_long(), 100);  // 99.5 to even
  EXPECT_EQ(r.by_ref.count(0), 0u);          // the prompt is never written
  ASSERT_EQ(ui_->states.size(), 1u);
  const MessageWindowState& s = ui_->states[0];
  EXPECT_EQ(s.title, u"Backup");
  EXPECT_EQ(s.prompt, u"{\\qc Copying}");
  EXPECT_EQ(s.counter_value, 150);
  EXPECT_EQ(s.counter_max, 150);  // the maximum of 100 was raised
  EXPECT_EQ(s.width_twips, 7000);
  EXPECT_TRUE(s.top_most);

  // Missing counters and an unreadable one are not written back.
  const InvokeResult q = Invoke(lib_, "tklSendMessage",
                                {std::nullopt, std::nullopt, std::nullopt, Variant(u"x")});
  EXPECT_TRUE(q.by_ref.empty());

  // Hide and clear by name; the next call starts afresh.
  Invoke(lib_, "tklHideMessage", {});
  EXPECT_FALSE(ui_->states.back().visible);
  Invoke(lib_, "tklClearMessage", {});
  Invoke(lib_, "tklSendMessage", {Variant(u"again")});
  EXPECT_EQ(ui_->states.back().counter_max, 100);
  EXPECT_TRUE(ui_->states.back().showing);
}

TEST_F(MessageMembersTest, ShowWaitByNameReturnsTheObject) {
  auto pointer = std::make_shared<MemoryMousePointer>();
  const InvokeResult r =
      Invoke(lib_, "tklShowWait", {Variant(std::shared_ptr<HostObject>(pointer)), Variant(true)},
             true);
  ASSERT_EQ(r.by_ref.count(0), 1u);
  EXPECT_EQ(r.by_ref.at(0).as_object(), pointer);
  EXPECT_EQ(pointer->MousePointer(), 11);
}

}  // namespace
}  // namespace norvik50
