// The progress window's rules without a display: a user interface that
// records every state it is handed and can play a user who resized the
// window.
#include "dialogs/message_window.h"

#include <gtest/gtest.h>

#include <deque>

#include "norvik50/locale.h"

namespace norvik50 {
namespace {

class RecordingUi : public UserInterface {
 public:
  void UpdateMessageWindow(const MessageWindowState& state) override {
    updates.push_back(state);
  }
  void UnloadMessageWindow() override { ++unloads; }
  bool MessageWindowSize(int32_t& width, int32_t& height) override {
    if (user_width == 0) return false;
    width = user_width;
    height = user_height;
    return true;
  }
  void ProcessEvents() override { ++pumps; }

  std::vector<MessageWindowState> updates;
  int unloads = 0;
  int pumps = 0;
  int32_t user_width = 0;  // a size the user gave the window; 0 for none
  int32_t user_height = 0;
};

class MessageWindowTest : public ::testing::Test {
 protected:
  MessageWindowTest() { SetHostApplication(u"host", u"Host Title"); }
  ~MessageWindowTest() override { SetHostApplication(u"", u""); }

  const MessageWindowState& Send(SendMessageArgs args) {
    window_.Send(args, ui_);
    last_args_ = args;
    return window_.state();
  }
  static SendMessageArgs Prompt(Variant prompt) {
    SendMessageArgs a;
    a.prompt = std::move(prompt);
    return a;
  }
  static SendMessageArgs Counter(std::optional<Variant> cur, std::optional<Variant> max) {
    SendMessageArgs a;
    a.cur_count = std::move(cur);
    a.max_count = std::move(max);
    return a;
  }

  MessageWindow window_;
  RecordingUi ui_;
  SendMessageArgs last_args_;
};

TEST_F(MessageWindowTest, TwoPromptsChangeOnlyTheText) {
  SendMessageArgs first = Prompt(Variant(u"Reading"));
  first.title = Variant(u"Export");
  first.show_counter = Variant(true);
  first.max_count = Variant(int32_t{50});
  first.cur_count = Variant(int32_t{10});
  first.width = Variant(int32_t{7200});
  Send(first);
  Send(Prompt(Variant(u"Writing \\b rows\\b0")));
  const MessageWindowState& s = Send(Prompt(Variant(u"Done")));
  EXPECT_EQ(s.prompt, u"{\\qc Done}");
  EXPECT_EQ(s.title, u"Export");
  EXPECT_TRUE(s.counter_visible);
  EXPECT_EQ(s.counter_value, 10);
  EXPECT_EQ(s.counter_max, 50);
  EXPECT_EQ(s.width_twips, 7200);
  // Shown by the first call only; the later ones neither move nor resize.
  ASSERT_EQ(ui_.updates.size(), 3u);
  EXPECT_TRUE(ui_.updates[0].showing);
  EXPECT_TRUE(ui_.updates[0].resized);
  EXPECT_FALSE(ui_.updates[1].showing || ui_.updates[1].resized);
  // The text may carry its own control words.
  EXPECT_EQ(ui_.updates[1].prompt, u"{\\qc Writing \\b rows\\b0}");
}

TEST_F(MessageWindowTest, EmptyPromptsKeepTheMessage) {
  const std::u16string shown = u"{\\qc Working}";
  struct Case {
    const char* what;
    Variant prompt;
    std::u16string expected;
  } cases[] = {
      {"Empty", Variant(), shown},
      {"Null", Variant::Null(), shown},
      {"empty text", Variant(u""), shown},
      {"Long 0", Variant(int32_t{0}), shown},
      {"Double 0", Variant(0.0), shown},
      {"an array cannot be read", Variant(SafeArray(0, {Variant(u"a")})), shown},
      // Only the number 0 is empty: the text "0" and other numbers show.
      {"text 0", Variant(u"0"), u"{\\qc 0}"},
      {"Long 7", Variant(int32_t{7}), u"{\\qc 7}"},
      {"a blank", Variant(u" "), u"{\\qc  }"},
  };
  for (const Case& c : cases) {
    window_.Clear(ui_);
    Send(Prompt(Variant(u"Working")));
    EXPECT_EQ(Send(Prompt(c.prompt)).prompt, c.expected) << c.what;
  }
}

TEST_F(MessageWindowTest, TheBarShowsExactlyForTrue) {
  struct Case {
    const char* what;
    Variant value;
    bool shown;
  } cases[] = {
      {"True", Variant(true), true},        {"-1", Variant(int32_t{-1}), true},
      {"text -1", Variant(u"-1"), true},    {"text True", Variant(u"True"), true},
      {"False", Variant(false), false},     {"1", Variant(int32_t{1}), false},
      {"text 1", Variant(u"1"), false},     {"other text", Variant(u"yes"), false},
      {"Null", Variant::Null(), false},     {"Empty", Variant(), false},
  };
  for (const Case& c : cases) {
    SendMessageArgs on;
    on.show_counter = Variant(true);
    Send(on);
    SendMessageArgs a;
    a.show_counter = c.value;
    EXPECT_EQ(Send(a).counter_visible, c.shown) << c.what;
  }
  // A missing value leaves the bar as it is.
  EXPECT_FALSE(Send(Prompt(Variant(u"x"))).counter_visible);
}

TEST_F(MessageWindowTest, CounterRaisesItsMaximumAndComesBackAsLong) {
  // 150 over a maximum of 100: the maximum follows, the bar is full.
  const MessageWindowState& s = Send(Counter(Variant(u"150"), std::nullopt));
  EXPECT_EQ(s.counter_max, 150);
  EXPECT_EQ(s.counter_value, 150);
  EXPECT_EQ(last_args_.cur_count->type(), VarType::kLong);
  EXPECT_EQ(last_args_.cur_count->as_long(), 150);

  struct Case {
    const char* what;
    std::optional<Variant> cur, max;
    int32_t value, maximum;
    std::optional<int32_t> cur_back, max_back;  // nullopt: left as given
  } cases[] = {
      // MaxCount 0 is not above the minimum 0: the maximum stays.
      {"max 0", std::nullopt, Variant(int32_t{0}), 150, 150, std::nullopt, 0},
      {"max 200", std::nullopt, Variant(200.0), 150, 200, std::nullopt, 200},
      // Half to even, as the runtime's CLng rounds.
      {"cur 2.5", Variant(2.5), std::nullopt, 2, 200, 2, std::nullopt},
      {"cur 3.5", Variant(3.5), std::nullopt, 4, 200, 4, std::nullopt},
      // Below the minimum the value is out of range: converted, not taken.
      {"cur -5", Variant(int32_t{-5}), std::nullopt, 4, 200, -5, std::nullopt},
      // Unreadable values skip their step and are not written back.
      {"cur text", Variant(u"many"), Variant(u"lots"), 4, 200, std::nullopt, std::nullopt},
      {"cur overflow", Variant(1e12), std::nullopt, 4, 200, std::nullopt, std::nullopt},
      {"cur Null", Variant::Null(), std::nullopt, 4, 200, std::nullopt, std::nullopt},
      // Both in one call: the maximum first, then the value.
      {"both", Variant(int32_t{60}), Variant(int32_t{80}), 60, 80, 60, 80},
      // A maximum below the value pulls the value down with it.
      {"max 30", std::nullopt, Variant(int32_t{30}), 30, 30, std::nullopt, 30},
  };
  for (const Case& c : cases) {
    const Variant cur_in = c.cur.value_or(Variant());
    const MessageWindowState& t = Send(Counter(c.cur, c.max));
    EXPECT_EQ(t.counter_value, c.value) << c.what;
    EXPECT_EQ(t.counter_max, c.maximum) << c.what;
    if (c.cur_back) {
      EXPECT_EQ(last_args_.cur_count->as_long(), *c.cur_back) << c.what;
    } else if (c.cur) {
      EXPECT_EQ(last_args_.cur_count->type(), cur_in.type()) << c.what;
    }
    if (c.max_back) {
      EXPECT_EQ(last_args_.max_count->as_long(), *c.max_back) << c.what;
    } else if (c.max) {
      EXPECT_NE(last_args_.max_count->type(), VarType::kLong) << c.what;
    }
  }
}

TEST_F(MessageWindowTest, SizeAndMessageTopOnlyWhenTheyDiffer) {
  const MessageWindowState designed;
  SendMessageArgs same;
  same.width = Variant(designed.width_twips);
  same.height = Variant(u"1950");
  same.message_top = Variant(double(designed.message_top_twips));
  Send(same);
  EXPECT_FALSE(ui_.updates.back().resized);
  EXPECT_FALSE(ui_.updates.back().message_moved);

  SendMessageArgs other;
  other.height = Variant(int32_t{3000});
  other.message_top = Variant(u"240");
  other.width = Variant(u"wide");  // unreadable: the width stays
  const MessageWindowState& s = Send(other);
  EXPECT_TRUE(s.resized);
  EXPECT_TRUE(s.message_moved);
  EXPECT_EQ(s.width_twips, designed.width_twips);
  EXPECT_EQ(s.height_twips, 3000);
  EXPECT_EQ(s.message_top_twips, 240);

  // The user made the window larger: the caller's old size differs from
  // it now and is taken again.
  ui_.user_width = 9000;
  ui_.user_height = 3000;
  SendMessageArgs again;
  again.width = Variant(designed.width_twips);
  again.height = Variant(int32_t{3000});
  const MessageWindowState& t = Send(again);
  EXPECT_TRUE(t.resized);
  EXPECT_EQ(t.width_twips, designed.width_twips);
  EXPECT_EQ(t.height_twips, 3000);
  // A call without sizes keeps the user's size and asks for no resize.
  const MessageWindowState& u = Send(Prompt(Variant(u"x")));
  EXPECT_FALSE(u.resized);
  EXPECT_EQ(u.width_twips, 9000);
}

TEST_F(MessageWindowTest, ShownOnceWithItsOwnerThenLeftAlone) {
  SendMessageArgs first = Prompt(Variant(u"a"));
  first.parent = 0x3a00007;
  first.top_most = false;
  Send(first);
  SendMessageArgs second = Prompt(Variant(u"b"));
  second.parent = 0x4400001;
  const MessageWindowState& s = Send(second);
  EXPECT_FALSE(s.showing);
  EXPECT_EQ(s.owner, 0x3a00007);
  EXPECT_FALSE(s.top_most);
  EXPECT_TRUE(ui_.updates.front().showing);
  EXPECT_TRUE(ui_.updates.front().visible);
}

TEST_F(MessageWindowTest, HiddenWindowComesBackWithItsContent) {
  SendMessageArgs first = Prompt(Variant(u"Step 1"));
  first.title = Variant(u"Import");
  first.show_counter = Variant(true);
  first.cur_count = Variant(int32_t{40});
  Send(first);
  window_.Hide(ui_);
  ASSERT_EQ(ui_.updates.size(), 2u);
  EXPECT_FALSE(ui_.updates[1].visible);
  EXPECT_TRUE(window_.loaded());

  const MessageWindowState& s = Send(Counter(Variant(int32_t{41}), std::nullopt));
  EXPECT_TRUE(s.visible);
  EXPECT_TRUE(s.showing);
  EXPECT_EQ(s.prompt, u"{\\qc Step 1}");
  EXPECT_TRUE(s.counter_visible);
  EXPECT_EQ(s.counter_value, 41);
  // Hidden and shown again, it keeps its old caption: only a window never
  // shown takes the application's title.
  EXPECT_EQ(s.title, u"Import");
  EXPECT_EQ(ui_.updates.back().title, u"Import");
  // An explicit title still changes a window that comes back.
  window_.Hide(ui_);
  SendMessageArgs retitled;
  retitled.title = Variant(u"Export");
  EXPECT_EQ(Send(retitled).title, u"Export");
}

TEST_F(MessageWindowTest, ClearStartsFromTheDesignedForm) {
  SendMessageArgs first = Prompt(Variant(u"Step 1"));
  first.title = Variant(u"Import");
  first.cur_count = Variant(int32_t{500});
  first.width = Variant(int32_t{8000});
  Send(first);
  window_.Clear(ui_);
  EXPECT_EQ(ui_.unloads, 1);
  EXPECT_FALSE(window_.loaded());
  const MessageWindowState& s = Send(Counter(Variant(int32_t{1}), std::nullopt));
  const MessageWindowState designed;
  EXPECT_EQ(s.title, u"Host Title");
  EXPECT_EQ(s.prompt, u"");
  EXPECT_EQ(s.counter_max, designed.counter_max);
  EXPECT_EQ(s.width_twips, designed.width_twips);
  EXPECT_TRUE(s.showing);
}

TEST_F(MessageWindowTest, HideAndClearOnNoWindowShowNothing) {
  window_.Hide(ui_);
  window_.Clear(ui_);
  EXPECT_TRUE(ui_.updates.empty());
  EXPECT_EQ(ui_.unloads, 0);
  EXPECT_FALSE(window_.loaded());
  // Hide twice: the second finds nothing visible to hide.
  Send(Prompt(Variant(u"x")));
  window_.Hide(ui_);
  window_.Hide(ui_);
  EXPECT_EQ(ui_.updates.size(), 2u);
}

TEST_F(MessageWindowTest, EventsAreProcessedUnlessNoEvents) {
  Send(Prompt(Variant(u"x")));
  EXPECT_EQ(ui_.pumps, 1);
  SendMessageArgs quiet = Counter(Variant(int32_t{3}), std::nullopt);
  quiet.no_events = true;
  Send(quiet);
  EXPECT_EQ(ui_.pumps, 1);
  window_.Hide(ui_);
  window_.Clear(ui_);
  EXPECT_EQ(ui_.pumps, 3);
}

// A clock that answers the given readings one after the other.
struct ScriptedClock {
  std::deque<float> readings;
  int reads = 0;
  float operator()() {
    ++reads;
    const float r = readings.front();
    if (readings.size() > 1) readings.pop_front();
    return r;
  }
};

TEST(WaitActivelyTest, EndsWhenTheClockPassesTheEnd) {
  struct Case {
    const char* what;
    int32_t ms;
    std::vector<float> readings;  // the first is the start
    int pumps;
  } cases[] = {
      {"plain", 500, {1000.0f, 1000.25f, 1000.5f, 1000.5625f}, 3},
      // The end is a Single: 80000 + 0.005 rounds to 80000.0078125, so the
      // clock must pass that, not 80000.005.
      {"single end", 5, {80000.0f, 80000.0078125f, 80000.015625f}, 2},
      // Across midnight the clock starts again at 0 and the wait goes on
      // until it passes the end value on the next day.
      {"midnight", 500, {86399.8f, 86399.95f, 0.05f, 30000.0f, 86400.0f, 86400.4f}, 5},
      // Nothing to wait for: the events are processed once.
      {"zero", 0, {5.0f, 5.0078125f}, 1},
      {"negative", -1000, {5.0f, 5.0f}, 1},
  };
  for (const Case& c : cases) {
    ScriptedClock clock{{c.readings.begin(), c.readings.end()}};
    int pumps = 0;
    WaitActively(c.ms, std::ref(clock), [&pumps] { ++pumps; });
    EXPECT_EQ(pumps, c.pumps) << c.what;
    EXPECT_EQ(clock.reads, c.pumps + 1) << c.what;
  }
}

TEST(WaitActivelyTest, RealClockIsSecondsSinceMidnight) {
  const float now = SecondsSinceMidnight();
  EXPECT_GE(now, 0.0f);
  EXPECT_LT(now, 86400.0f);
}

}  // namespace
}  // namespace norvik50
