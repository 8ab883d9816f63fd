#include "dialogs/message_window.h"

#include <chrono>
#include <ctime>
#include <thread>

#include "norvik50/error.h"
#include "numeric/convert_to_type.h"

namespace norvik50 {
namespace {

constexpr int32_t kLongType = 3;
constexpr int32_t kDoubleType = 5;
constexpr int32_t kStringType = 8;
constexpr int32_t kBooleanType = 11;

// The value as a Long as the runtime's CLng reads it (in the current
// locale, half to even); nullopt when it cannot be read, so the caller
// skips its step.
std::optional<int32_t> WholeNumber(const Variant& value) {
  try {
    return ConvertStrict(kLongType, value).as_long();
  } catch (const Error&) {
    return std::nullopt;
  }
}

std::optional<std::u16string> Text(const Variant& value) {
  try {
    return ConvertStrict(kStringType, value).as_string();
  } catch (const Error&) {
    return std::nullopt;
  }
}

}  // namespace

std::optional<std::u16string> PromptText(const std::optional<Variant>& prompt) {
  if (!prompt || prompt->is_empty() || prompt->is_null()) return std::nullopt;
  // A host clears its prompt variable to 0 as often as to "": both mean
  // "keep the message shown".
  if (prompt->is_numeric() && prompt->numeric_value() == 0.0) return std::nullopt;
  std::optional<std::u16string> text = Text(*prompt);
  if (text && text->empty()) return std::nullopt;
  return text;
}

bool EqualsTrue(const Variant& value) {
  if (value.is_string()) {
    // Numeric text compares by its number, other text by its Boolean word.
    try {
      return ConvertStrict(kDoubleType, value).as_double() == -1.0;
    } catch (const Error&) {
    }
    try {
      return ConvertStrict(kBooleanType, value).as_boolean() != 0;
    } catch (const Error&) {
      return false;
    }
  }
  const std::optional<double> number = value.numeric_value();
  return number && value.type() != VarType::kDate && *number == -1.0;
}

void MessageWindow::Send(SendMessageArgs& args, UserInterface& ui) {
  // Every Send shows the window, so one loaded before this call has been
  // shown already.
  const bool never_shown = !loaded_;
  if (never_shown) {
    state_ = MessageWindowState();
    loaded_ = true;
  }
  MessageWindowState& s = state_;
  s.showing = s.resized = s.message_moved = false;
  // The user may have resized the window since the last call: the size
  // rules compare against the size it has now.
  if (s.visible) ui.MessageWindowSize(s.width_twips, s.height_twips);

  if (args.title) {
    if (auto text = Text(*args.title)) s.title = *text;
  } else if (never_shown) {
    // Only a fresh window takes the application's title: one hidden by
    // Hide comes back with its old content, the caption included.
    s.title = HostApplicationTitle();
  }
  if (auto text = PromptText(args.prompt)) s.prompt = u"{\\qc " + *text + u"}";
  if (args.show_counter) s.counter_visible = EqualsTrue(*args.show_counter);
  if (args.width) {
    const auto width = WholeNumber(*args.width);
    if (width && *width != s.width_twips) {
      s.width_twips = *width;
      s.resized = true;
    }
  }
  if (args.height) {
    const auto height = WholeNumber(*args.height);
    if (height && *height != s.height_twips) {
      s.height_twips = *height;
      s.resized = true;
    }
  }
  if (args.message_top) {
    const auto top = WholeNumber(*args.message_top);
    if (top && *top != s.message_top_twips) {
      s.message_top_twips = *top;
      s.message_moved = true;
    }
  }
  if (args.max_count) {
    if (const auto max = WholeNumber(*args.max_count)) {
      *args.max_count = Variant(*max);
      if (*max > s.counter_min) {
        s.counter_max = *max;
        // A bar never shows a value past its end.
        if (s.counter_value > s.counter_max) s.counter_value = s.counter_max;
      }
    }
  }
  if (args.cur_count) {
    if (const auto count = WholeNumber(*args.cur_count)) {
      *args.cur_count = Variant(*count);
      // A counter that runs past the maximum raises it instead of failing;
      // one below the minimum is out of range and is skipped.
      if (*count > s.counter_max) s.counter_max = *count;
      if (*count >= s.counter_min) s.counter_value = *count;
    }
  }
  if (!s.visible) {
    s.visible = true;
    s.showing = true;
    s.owner = args.parent;
    s.top_most = args.top_most;
  }
  ui.UpdateMessageWindow(s);
  if (!args.no_events) ui.ProcessEvents();
}

void MessageWindow::Hide(UserInterface& ui) {
  if (loaded_ && state_.visible) {
    ui.MessageWindowSize(state_.width_twips, state_.height_twips);
    state_.visible = false;
    state_.showing = state_.resized = state_.message_moved = false;
    ui.UpdateMessageWindow(state_);
  }
  ui.ProcessEvents();
}

void MessageWindow::Clear(UserInterface& ui) {
  if (loaded_) {
    ui.UnloadMessageWindow();
    loaded_ = false;
    state_ = MessageWindowState();
  }
  ui.ProcessEvents();
}

MessageWindow& ProcessMessageWindow() {
  static MessageWindow window;
  return window;
}

void WaitActively(int32_t milliseconds, const std::function<float()>& clock,
                  const std::function<void()>& process_events) {
  const float start = clock();
  // The sum is taken in double and stored as a Single, as the host runtime
  // evaluates "Timer + ms / 1000" into a Single variable.
  const float end = static_cast<float>(static_cast<double>(start) + milliseconds / 1000.0);
  do {
    process_events();
    // A short nap between rounds keeps the wait from taking a whole core;
    // the clock's own steps (1/128 s near the end of a day) are coarser.
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  } while (!(clock() > end));
}

float SecondsSinceMidnight() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&seconds, &local);
  const double fraction =
      std::chrono::duration<double>(now - std::chrono::system_clock::from_time_t(seconds)).count();
  return static_cast<float>(local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec + fraction);
}

}  // namespace norvik50
