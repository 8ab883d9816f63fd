// An object with a mouse pointer, as tklShowWait drives it: a host's form,
// control or screen whose "MousePointer" property names the pointer shown
// over it (0 default, 11 hourglass); and a control that can hold the
// mouse, as tklCheckMouseMove and tklCheckMouseDown drive it. The Qt
// adapter for a QWidget comes with the dialogs (norvik50/qt_dialogs.h);
// MemoryMousePointer serves hosts without a toolkit, the batch and tests.
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

// A control that can hold the mouse: while it does, every move and button
// of the mouse reaches it, also once the pointer has left it, so that the
// control learns where the pointer went.
class NORVIK50_EXPORT MouseHolder {
 public:
  virtual ~MouseHolder();
  // The control's size in twips; the pointer is on it from 0 up to below
  // each.
  virtual int32_t WidthTwips() const = 0;
  virtual int32_t HeightTwips() const = 0;
  virtual bool HoldsMouse() const = 0;
  // Holds the mouse for the control (`hold` false: lets it go, when it
  // holds it). A control that is gone does nothing.
  virtual void HoldMouse(bool hold) = 0;
};

// A mouse pointer held in memory: it takes any value at once. As a control
// of `width` and `height` twips it holds the mouse when told to.
class NORVIK50_EXPORT MemoryMousePointer final : public MousePointerControl, public MouseHolder {
 public:
  explicit MemoryMousePointer(int16_t pointer = kPointerDefault) : pointer_(pointer) {}
  int16_t MousePointer() const override { return pointer_; }
  void SetMousePointer(int16_t pointer) override { pointer_ = pointer; }
  int32_t WidthTwips() const override { return width; }
  int32_t HeightTwips() const override { return height; }
  bool HoldsMouse() const override { return holds_mouse; }
  void HoldMouse(bool hold) override { holds_mouse = hold; }

  int32_t width = 0;
  int32_t height = 0;
  bool holds_mouse = false;

 private:
  int16_t pointer_;
};

}  // namespace norvik50

#endif  // NORVIK50_MOUSE_POINTER_H_
