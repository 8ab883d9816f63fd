#include "dialogs/qt/x11_desktop.h"

#include <xcb/xfixes.h>

#include <QString>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

namespace norvik50::qt {
namespace {

// Replies are freed with free(), as xcb allocates them.
template <typename Reply>
struct Freed {
  void operator()(Reply* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, Freed<Reply>>;

// Window properties longer than this (in 32-bit units) are cut: 4 KB is
// plenty for a class or a title, and many window ids for a client list.
constexpr uint32_t kPropertyUnits = 1024;
constexpr uint32_t kClientListUnits = 65536;

std::u16string FromLatin1(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  for (const char c : bytes) text.push_back(static_cast<unsigned char>(c));
  return text;
}

std::u16string FromUtf8(std::string_view bytes) {
  return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())).toStdU16String();
}

struct Property {
  xcb_atom_t type = XCB_ATOM_NONE;
  std::string bytes;
};

xcb_get_property_cookie_t AskProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t name,
                                      uint32_t units = kPropertyUnits) {
  return xcb_get_property(c, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, units);
}

// nullopt when the window or the property is not there.
std::optional<Property> TakeProperty(xcb_connection_t* c, xcb_get_property_cookie_t cookie) {
  ReplyPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(c, cookie, nullptr));
  if (!reply || reply->type == XCB_ATOM_NONE) return std::nullopt;
  const auto* data = static_cast<const char*>(xcb_get_property_value(reply.get()));
  const int length = xcb_get_property_value_length(reply.get());
  return Property{reply->type, std::string(data, static_cast<std::size_t>(std::max(length, 0)))};
}

std::vector<xcb_window_t> WindowsOf(const Property& property) {
  std::vector<xcb_window_t> windows(property.bytes.size() / sizeof(xcb_window_t));
  std::copy_n(property.bytes.data(), windows.size() * sizeof(xcb_window_t),
              reinterpret_cast<char*>(windows.data()));
  return windows;
}

std::vector<xcb_window_t> ChildrenTopFirst(xcb_connection_t* c, xcb_window_t parent) {
  ReplyPtr<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(c, xcb_query_tree(c, parent), nullptr));
  if (!tree) return {};
  const xcb_window_t* children = xcb_query_tree_children(tree.get());
  // The server lists them bottom to top.
  return std::vector<xcb_window_t>(
      std::make_reverse_iterator(children + xcb_query_tree_children_length(tree.get())),
      std::make_reverse_iterator(children));
}

// One round trip: every request sent before it has been carried out when
// it returns, so another connection sees the result.
void Sync(xcb_connection_t* c) {
  ReplyPtr<xcb_get_input_focus_reply_t>(
      xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
}

}  // namespace

PixelBox PixelsOf(const TwipsRect& twips) {
  const auto pixel = [](int64_t t) { return static_cast<int32_t>(std::lround(t / 15.0)); };
  PixelBox box{pixel(twips.left), pixel(twips.top), pixel(int64_t{twips.left} + twips.width),
               pixel(int64_t{twips.top} + twips.height)};
  box.right = std::max(box.right, box.left + 1);
  box.bottom = std::max(box.bottom, box.top + 1);
  return box;
}

std::pair<std::u16string, std::u16string> ParseWmClass(std::string_view bytes) {
  const std::size_t end_of_instance = std::min(bytes.find('\0'), bytes.size());
  const std::string_view instance = bytes.substr(0, end_of_instance);
  std::string_view rest = bytes.substr(std::min(end_of_instance + 1, bytes.size()));
  rest = rest.substr(0, std::min(rest.find('\0'), rest.size()));
  return {FromLatin1(instance), FromLatin1(rest)};
}

std::unique_ptr<X11Desktop> X11Desktop::Connect() {
  const char* display = std::getenv("DISPLAY");
  if (display == nullptr || *display == '\0') return nullptr;
  int screen_number = 0;
  xcb_connection_t* connection = xcb_connect(display, &screen_number);
  if (xcb_connection_has_error(connection) != 0) {
    xcb_disconnect(connection);
    return nullptr;
  }
  xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (int i = 0; i < screen_number && it.rem > 0; ++i) xcb_screen_next(&it);
  if (it.rem == 0) {
    xcb_disconnect(connection);
    return nullptr;
  }
  return std::unique_ptr<X11Desktop>(new X11Desktop(connection, it.data));
}

X11Desktop::X11Desktop(xcb_connection_t* connection, xcb_screen_t* screen)
    : connection_(connection), screen_(screen) {}

X11Desktop::~X11Desktop() {
  Release();
  xcb_disconnect(connection_);
}

xcb_atom_t X11Desktop::Atom(const char* name) {
  ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection_,
      xcb_intern_atom(connection_, 1, static_cast<uint16_t>(std::string_view(name).size()), name),
      nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::optional<std::vector<xcb_window_t>> X11Desktop::ManagedClients() {
  // A window manager that ran once may have left its lists behind; only
  // one that still runs keeps its check window, which names itself.
  const xcb_atom_t check = Atom("_NET_SUPPORTING_WM_CHECK");
  if (check == XCB_ATOM_NONE) return std::nullopt;
  const std::optional<Property> on_root =
      TakeProperty(connection_, AskProperty(connection_, screen_->root, check));
  if (!on_root || WindowsOf(*on_root).empty()) return std::nullopt;
  const xcb_window_t manager = WindowsOf(*on_root).front();
  const std::optional<Property> on_manager =
      TakeProperty(connection_, AskProperty(connection_, manager, check));
  if (!on_manager || WindowsOf(*on_manager) != std::vector<xcb_window_t>{manager})
    return std::nullopt;
  // The stacking order, bottom to top, else the order of mapping.
  for (const char* list : {"_NET_CLIENT_LIST_STACKING", "_NET_CLIENT_LIST"}) {
    const xcb_atom_t atom = Atom(list);
    if (atom == XCB_ATOM_NONE) continue;
    const std::optional<Property> clients =
        TakeProperty(connection_, AskProperty(connection_, screen_->root, atom, kClientListUnits));
    if (!clients) continue;
    std::vector<xcb_window_t> windows = WindowsOf(*clients);
    std::reverse(windows.begin(), windows.end());
    return windows;
  }
  return std::vector<xcb_window_t>();
}

std::vector<xcb_window_t> X11Desktop::RootChildrenTopFirst() {
  const std::vector<xcb_window_t> children = ChildrenTopFirst(connection_, screen_->root);
  std::vector<xcb_get_window_attributes_cookie_t> asked;
  asked.reserve(children.size());
  for (const xcb_window_t child : children) {
    asked.push_back(xcb_get_window_attributes(connection_, child));
  }
  // Shown windows only, and no pop-ups (menus, tooltips), which place
  // themselves outside any window manager.
  std::vector<xcb_window_t> shown;
  for (std::size_t i = 0; i < children.size(); ++i) {
    ReplyPtr<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection_, asked[i], nullptr));
    if (!attributes || attributes->override_redirect ||
        attributes->map_state == XCB_MAP_STATE_UNMAPPED) {
      continue;
    }
    shown.push_back(children[i]);
  }
  // A frame drawn by a window manager without the desktop lists stands
  // for the program's window inside it, which carries the class.
  std::vector<xcb_get_property_cookie_t> classes;
  for (const xcb_window_t window : shown) {
    classes.push_back(AskProperty(connection_, window, XCB_ATOM_WM_CLASS));
  }
  for (std::size_t i = 0; i < shown.size(); ++i) {
    if (TakeProperty(connection_, classes[i])) continue;
    for (const xcb_window_t inner : ChildrenTopFirst(connection_, shown[i])) {
      if (TakeProperty(connection_, AskProperty(connection_, inner, XCB_ATOM_WM_CLASS))) {
        shown[i] = inner;
        break;
      }
    }
  }
  return shown;
}

std::vector<TopLevelWindow> X11Desktop::TopLevelWindows() {
  std::optional<std::vector<xcb_window_t>> managed = ManagedClients();
  const std::vector<xcb_window_t> windows = managed ? std::move(*managed) : RootChildrenTopFirst();
  const xcb_atom_t net_name = Atom("_NET_WM_NAME");
  const xcb_atom_t utf8 = Atom("UTF8_STRING");
  struct Asked {
    xcb_get_property_cookie_t wm_class, net_name, name;
  };
  // All questions first, then all answers: one wait for the whole desktop.
  std::vector<Asked> asked;
  asked.reserve(windows.size());
  for (const xcb_window_t window : windows) {
    asked.push_back({AskProperty(connection_, window, XCB_ATOM_WM_CLASS),
                     AskProperty(connection_, window, net_name),
                     AskProperty(connection_, window, XCB_ATOM_WM_NAME)});
  }
  std::vector<TopLevelWindow> found;
  found.reserve(windows.size());
  for (std::size_t i = 0; i < windows.size(); ++i) {
    TopLevelWindow window;
    window.id = windows[i];
    if (const auto wm_class = TakeProperty(connection_, asked[i].wm_class)) {
      std::tie(window.instance, window.class_name) = ParseWmClass(wm_class->bytes);
    }
    const std::optional<Property> modern = TakeProperty(connection_, asked[i].net_name);
    const std::optional<Property> classic = TakeProperty(connection_, asked[i].name);
    if (modern && !modern->bytes.empty()) {
      window.title = FromUtf8(modern->bytes);
    } else if (classic) {
      window.title = classic->type == utf8 ? FromUtf8(classic->bytes) : FromLatin1(classic->bytes);
    }
    found.push_back(std::move(window));
  }
  return found;
}

bool X11Desktop::HasBarriers() {
  if (barriers_known_ < 0) {
    barriers_known_ = 0;
    const xcb_query_extension_reply_t* extension =
        xcb_get_extension_data(connection_, &xcb_xfixes_id);
    if (extension != nullptr && extension->present) {
      // The server answers requests of a version only after the client
      // named it; barriers came with version 5.
      ReplyPtr<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
          connection_,
          xcb_xfixes_query_version(connection_, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION),
          nullptr));
      barriers_known_ = version && version->major_version >= 5 ? 1 : 0;
    }
  }
  return barriers_known_ == 1;
}

bool X11Desktop::Confine(const PixelBox& wanted) {
  Release();
  if (!HasBarriers()) return false;
  const int32_t width = screen_->width_in_pixels;
  const int32_t height = screen_->height_in_pixels;
  const PixelBox box{std::max(wanted.left, 0), std::max(wanted.top, 0),
                     std::min(wanted.right, width), std::min(wanted.bottom, height)};
  if (box.right <= box.left || box.bottom <= box.top) return false;

  // The barriers keep a pointer from leaving, not from being outside.
  ReplyPtr<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, screen_->root), nullptr));
  if (pointer) {
    const int32_t x = std::clamp<int32_t>(pointer->root_x, box.left, box.right - 1);
    const int32_t y = std::clamp<int32_t>(pointer->root_y, box.top, box.bottom - 1);
    if (x != pointer->root_x || y != pointer->root_y) {
      xcb_warp_pointer(connection_, XCB_NONE, screen_->root, 0, 0, 0, 0, static_cast<int16_t>(x),
                       static_cast<int16_t>(y));
    }
  }
  // Each edge a line across the whole screen, so that no corner leaks;
  // each lets the pointer pass only inwards.
  struct Edge {
    int32_t x1, y1, x2, y2;
    uint32_t inwards;
  };
  const Edge edges[4] = {
      {box.left, 0, box.left, height, XCB_XFIXES_BARRIER_DIRECTIONS_POSITIVE_X},
      {box.right, 0, box.right, height, XCB_XFIXES_BARRIER_DIRECTIONS_NEGATIVE_X},
      {0, box.top, width, box.top, XCB_XFIXES_BARRIER_DIRECTIONS_POSITIVE_Y},
      {0, box.bottom, width, box.bottom, XCB_XFIXES_BARRIER_DIRECTIONS_NEGATIVE_Y},
  };
  std::array<xcb_void_cookie_t, 4> made{};
  for (std::size_t i = 0; i < 4; ++i) {
    barriers_[i] = xcb_generate_id(connection_);
    made[i] = xcb_xfixes_create_pointer_barrier_checked(
        connection_, barriers_[i], screen_->root, static_cast<uint16_t>(edges[i].x1),
        static_cast<uint16_t>(edges[i].y1), static_cast<uint16_t>(edges[i].x2),
        static_cast<uint16_t>(edges[i].y2), edges[i].inwards, 0, nullptr);
  }
  bool all_made = true;
  std::array<bool, 4> ok{};
  for (std::size_t i = 0; i < 4; ++i) {
    ReplyPtr<xcb_generic_error_t> error(xcb_request_check(connection_, made[i]));
    ok[i] = !error;
    all_made = all_made && ok[i];
  }
  if (!all_made) {
    for (std::size_t i = 0; i < 4; ++i) {
      if (ok[i]) xcb_xfixes_delete_pointer_barrier(connection_, barriers_[i]);
    }
    Sync(connection_);
    return false;
  }
  confined_ = true;
  return true;
}

void X11Desktop::Release() {
  if (!confined_) return;
  confined_ = false;
  for (const uint32_t barrier : barriers_) xcb_xfixes_delete_pointer_barrier(connection_, barrier);
  Sync(connection_);
}

}  // namespace norvik50::qt
