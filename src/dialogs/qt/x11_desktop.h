// The X11 desktop as other programs share it: their top-level windows with
// WM_CLASS and title, and the pointer kept inside a rectangle by XFixes
// pointer barriers. A connection of the library's own, apart from Qt's, so
// that its barriers live exactly as long as it does: the server removes
// them when the connection closes, however the process ends.
#ifndef NORVIK50_SRC_DIALOGS_QT_X11_DESKTOP_H_
#define NORVIK50_SRC_DIALOGS_QT_X11_DESKTOP_H_

#include <xcb/xcb.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "norvik50/host.h"

namespace norvik50::qt {

// A rectangle in pixels: left and top included, right and bottom not.
struct PixelBox {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;
  bool operator==(const PixelBox&) const = default;
};

// The pixels a rectangle in twips covers, each edge rounded to the nearest
// pixel and never less than one pixel wide and high.
PixelBox PixelsOf(const TwipsRect& twips);

// The two parts of a WM_CLASS value ("instance\0class\0", Latin-1): a
// missing part is "".
std::pair<std::u16string, std::u16string> ParseWmClass(std::string_view bytes);

class X11Desktop {
 public:
  // A connection to the X server of DISPLAY; nullptr when there is none.
  static std::unique_ptr<X11Desktop> Connect();
  ~X11Desktop();
  X11Desktop(const X11Desktop&) = delete;
  X11Desktop& operator=(const X11Desktop&) = delete;

  // The top-level windows, top-most first: the window manager's clients
  // when one runs, else the root window's mapped children (a child of a
  // frame that carries no class of its own standing in for it).
  std::vector<TopLevelWindow> TopLevelWindows();

  // Moves the pointer into `box` (cut to the screen) and keeps it there;
  // replaces the previous confinement. False, with no confinement left,
  // when the box lies off the screen or the server has no pointer barriers.
  bool Confine(const PixelBox& box);
  void Release();
  bool Confined() const { return confined_; }

 private:
  explicit X11Desktop(xcb_connection_t* connection, xcb_screen_t* screen);
  xcb_atom_t Atom(const char* name);
  // The window manager's clients, top-most first; nullopt when none runs.
  std::optional<std::vector<xcb_window_t>> ManagedClients();
  std::vector<xcb_window_t> RootChildrenTopFirst();
  bool HasBarriers();

  xcb_connection_t* connection_;
  xcb_screen_t* screen_;
  int barriers_known_ = -1;  // -1 not asked yet, else whether XFixes 5 is there
  std::array<uint32_t, 4> barriers_{};
  bool confined_ = false;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_X11_DESKTOP_H_
