// An object with a mouse pointer, as tklShowWait drives it: a host's form,
// control or screen whose "MousePointer" property names the pointer shown
// over it (0 default, 11 hourglass). The Qt adapter for a QWidget comes
// with the dialogs (norvik50/qt_dialogs.h); MemoryMousePointer serves
// hosts without a toolkit, the batch and tests.
//
// Thread safety: none; an object belongs to the thread that uses it.
#ifndef NORVIK50_MOUSE_POINTER_H_
#define NORVIK50_MOUSE_POINTER_H_

#include <cstdint>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

inline constexpr int16_t kPointerDefault = 0;
inline constexpr int16_t kPointerHourglass = 11;

class NORVIK50_EXPORT MousePointerControl : public HostObject {
 public:
  ~MousePointerControl() override;
  // The pointer the object reports now.
  virtual int16_t MousePointer() const = 0;
  // Asks for pointer `pointer`; a window system may take it over only
  // once its pending events are processed. May raise an Error for a
  // pointer the object cannot show.
  virtual void SetMousePointer(int16_t pointer) = 0;
};

// A mouse pointer held in memory: it takes any value at once.
class NORVIK50_EXPORT MemoryMousePointer final : public MousePointerControl {
 public:
  explicit MemoryMousePointer(int16_t pointer = kPointerDefault) : pointer_(pointer) {}
  int16_t MousePointer() const override { return pointer_; }
  void SetMousePointer(int16_t pointer) override { pointer_ = pointer; }

 private:
  int16_t pointer_;
};

}  // namespace norvik50

#endif  // NORVIK50_MOUSE_POINTER_H_
