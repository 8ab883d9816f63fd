#include "norvik50/text_control.h"

namespace norvik50 {

// Out of line, so the interface's type information lives in one library.
TextControl::~TextControl() = default;

}  // namespace norvik50
