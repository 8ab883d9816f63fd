// A host's window with rounded corners and a soft shadow, for the forms
// a host draws without the window manager's frame (a splash, a tool tip
// of its own, a clock).
#ifndef NORVIK50_SRC_DIALOGS_QT_WINDOW_SHAPE_H_
#define NORVIK50_SRC_DIALOGS_QT_WINDOW_SHAPE_H_

#include <QImage>

class QWidget;

namespace norvik50::qt {

// Cuts the window's corners round with `radius` pixels, and keeps them
// round when it is resized; 0 makes them square again.
void SetRoundCorners(QWidget& window, int radius);

// The radius SetRoundCorners gave the window; 0 for square corners.
int RoundCornerRadius(const QWidget& window);

// Gives the window a soft shadow to its right and below it, drawn in a
// window of its own that follows the window's moves, size, visibility and
// corners (`on` false removes it). The shadow window takes no input and
// never the focus. It needs a compositing window manager on X11 to be
// see-through; without one it shows as a dark margin.
void SetDropShadow(QWidget& window, bool on);

// The shadow window of `window`; null when it has none.
QWidget* DropShadowOf(const QWidget& window);

// How far the shadow reaches beyond the window and how far it is moved
// to the right and down, in pixels.
inline constexpr int kShadowBlur = 12;
inline constexpr int kShadowOffset = 5;

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_WINDOW_SHAPE_H_
