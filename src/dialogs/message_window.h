// The progress message window (frmMessage) without a toolkit: the one
// window of the process that tklSendMessage opens and changes,
// tklHideMessage hides and tklClearMessage unloads. Every rule of the
// members lives here; the user interface only shows the state it is
// handed (UserInterface::UpdateMessageWindow), so the rules are testable
// without a display. Also the clock rule of tklWait.
//
// Thread safety: none. The window belongs to the thread that first opened
// it; every call must come from that thread.
#ifndef NORVIK50_SRC_DIALOGS_MESSAGE_WINDOW_H_
#define NORVIK50_SRC_DIALOGS_MESSAGE_WINDOW_H_

#include <cstdint>
#include <functional>
#include <optional>

#include "norvik50/host.h"
#include "norvik50/variant.h"

namespace norvik50 {

// The arguments of one tklSendMessage call; nullopt for a missing one.
struct SendMessageArgs {
  std::optional<Variant> prompt;
  std::optional<Variant> title;
  std::optional<Variant> show_counter;
  std::optional<Variant> cur_count;  // in/out: replaced by its Long value
  std::optional<Variant> max_count;  // in/out: replaced by its Long value
  int64_t parent = 0;
  std::optional<Variant> width;
  std::optional<Variant> height;
  std::optional<Variant> message_top;
  bool no_events = false;
  bool top_most = true;
};

class MessageWindow {
 public:
  // One tklSendMessage: applies the given arguments in order (title,
  // prompt, counter visibility, size, message top, maximum, counter),
  // shows the window when it is not visible, hands the state to `ui` and
  // processes pending events unless `args.no_events`. Without a title, a
  // window loaded by this call takes the application's title; a hidden
  // one keeps its caption. A step whose value
  // cannot be read is skipped; nothing raises. `args.cur_count` and
  // `args.max_count` become Longs when they convert.
  void Send(SendMessageArgs& args, UserInterface& ui);
  // Hides a loaded window (text and counter kept). Nothing on a window
  // that is not loaded. Then processes pending events.
  void Hide(UserInterface& ui);
  // Unloads the window: the next Send starts from the designed form.
  // Nothing on a window that is not loaded. Then processes pending events.
  void Clear(UserInterface& ui);

  bool loaded() const { return loaded_; }
  // The state last handed to the user interface.
  const MessageWindowState& state() const { return state_; }

 private:
  bool loaded_ = false;
  MessageWindowState state_;
};

// The window of the process, created on first use.
MessageWindow& ProcessMessageWindow();

// The text of a prompt, or nullopt for the values that count as no
// prompt at all (missing, Empty, Null, "", a number 0) or cannot be read.
std::optional<std::u16string> PromptText(const std::optional<Variant>& prompt);

// True exactly for a value that equals True: a Boolean True or a number
// (or numeric text) of -1, the value True has.
bool EqualsTrue(const Variant& value);

// tklWait with bIsActive: notes `clock()` (seconds since midnight), takes
// the end as start + milliseconds / 1000 rounded to single precision and
// calls `process_events` until the clock exceeds the end. There is no
// allowance for the clock's wrap at midnight: a wait that spans midnight
// lasts until the clock passes the end value on the next day.
void WaitActively(int32_t milliseconds, const std::function<float()>& clock,
                  const std::function<void()>& process_events);

// Seconds since local midnight, with the fraction, as a Single.
float SecondsSinceMidnight();

}  // namespace norvik50

#endif  // NORVIK50_SRC_DIALOGS_MESSAGE_WINDOW_H_
