#include "norvik50/text_control.h"

#include <algorithm>

#include "norvik50/container.h"

namespace norvik50 {

// Out of line, so the interfaces' type information lives in one library.
Focusable::~Focusable() = default;
TextControl::~TextControl() = default;
StatusPanel::~StatusPanel() = default;
Contained::~Contained() = default;
ControlContainer::~ControlContainer() = default;

void MemoryTextBox::SetText(std::u16string_view text) {
  text_ = text;
  sel_start = 0;
  sel_length = 0;
}

void MemoryTextBox::Select(int32_t start, int32_t length) {
  const auto size = static_cast<int32_t>(std::min<std::size_t>(text_.size(), INT32_MAX));
  sel_start = std::clamp(start, 0, size);
  sel_length = std::clamp(length, 0, size - sel_start);
}

}  // namespace norvik50
