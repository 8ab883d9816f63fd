#include "norvik50/mouse_pointer.h"

namespace norvik50 {

// Out of line, so the interface's type information lives in one library.
MousePointerControl::~MousePointerControl() = default;
MouseHolder::~MouseHolder() = default;

}  // namespace norvik50
