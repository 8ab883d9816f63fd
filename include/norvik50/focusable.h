// A host control that can take the input focus: what tklSetFocus needs of
// any control, whether a text field, a list or a tab strip.
//
// Thread safety: none; a control belongs to the thread that uses it.
#ifndef NORVIK50_FOCUSABLE_H_
#define NORVIK50_FOCUSABLE_H_

#include "norvik50/export.h"

namespace norvik50 {

class NORVIK50_EXPORT Focusable {
 public:
  virtual ~Focusable();
  // Gives the control the input focus; does nothing where it cannot have it.
  virtual void SetFocus() = 0;
};

}  // namespace norvik50

#endif  // NORVIK50_FOCUSABLE_H_
