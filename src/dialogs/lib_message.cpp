// LIB: the progress message window and the two helpers that keep the user
// informed during long tasks, tklShowWait and tklWait.
#include <chrono>
#include <thread>

#include "dialogs/message_window.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/mouse_pointer.h"

namespace norvik50 {
namespace {

// tklShowWait gives a window system this many rounds of event processing
// to take the new pointer over before it stops waiting for it.
constexpr int kPointerRounds = 1000;

}  // namespace

void LIB::tklSendMessage(const std::optional<Variant>& Prompt, const std::optional<Variant>& Title,
                         const std::optional<Variant>& ShowCounter, Variant* CurCount,
                         Variant* MaxCount, int32_t ParentHwnd,
                         const std::optional<Variant>& WidthInTwips,
                         const std::optional<Variant>& HeightInTwips,
                         const std::optional<Variant>& MsgTopInTwips, bool NoEvents,
                         bool OpenAsTopMost) {
  SendMessageArgs args{Prompt,       Title,
                       ShowCounter,  CurCount ? std::optional<Variant>(*CurCount) : std::nullopt,
                       MaxCount ? std::optional<Variant>(*MaxCount) : std::nullopt,
                       ParentHwnd,   WidthInTwips,
                       HeightInTwips, MsgTopInTwips,
                       NoEvents,     OpenAsTopMost};
  ProcessMessageWindow().Send(args, CurrentUserInterface());
  if (CurCount) *CurCount = std::move(*args.cur_count);
  if (MaxCount) *MaxCount = std::move(*args.max_count);
}

void LIB::tklHideMessage() { ProcessMessageWindow().Hide(CurrentUserInterface()); }

void LIB::tklClearMessage() { ProcessMessageWindow().Clear(CurrentUserInterface()); }

void LIB::tklShowWait(const std::shared_ptr<HostObject>& oSource, bool value) {
  auto* source = dynamic_cast<MousePointerControl*>(oSource.get());
  if (source == nullptr) return;
  const int16_t pointer = value ? kPointerHourglass : kPointerDefault;
  UserInterface& ui = CurrentUserInterface();
  // Any failure ends the member quietly: a pointer is a courtesy, never a
  // reason to stop the host's task.
  try {
    source->SetMousePointer(pointer);
    // The window system may take the pointer over only with its events;
    // bounded, so an object that never reports it cannot hang the host.
    for (int round = 0; round < kPointerRounds; ++round) {
      ui.ProcessEvents();
      if (source->MousePointer() == pointer) break;
    }
  } catch (const Error&) {
  }
}

void LIB::tklWait(int32_t lMilliSeconds, bool bIsActive) {
  if (!bIsActive) {
    // A negative time would be an endless sleep to the system call this
    // stands for; here it is no wait at all.
    if (lMilliSeconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(lMilliSeconds));
    return;
  }
  UserInterface& ui = CurrentUserInterface();
  WaitActively(lMilliSeconds, &SecondsSinceMidnight, [&ui] { ui.ProcessEvents(); });
}

}  // namespace norvik50
