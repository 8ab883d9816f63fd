// Another program's window for the tests that find windows by class: maps
// a top-level window with the given WM_CLASS and title, says so on stdout
// ("mapped <id>"), keeps it for the given milliseconds and exits, which
// takes the window with it.
//
//   class_window INSTANCE CLASS TITLE MILLISECONDS
#include <xcb/xcb.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

namespace {

void SetText(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             const std::string& bytes) {
  xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                      static_cast<uint32_t>(bytes.size()), bytes.data());
}

xcb_atom_t Atom(xcb_connection_t* c, const char* name) {
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
      c, xcb_intern_atom(c, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr);
  const xcb_atom_t atom = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  std::free(reply);
  return atom;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: class_window INSTANCE CLASS TITLE MILLISECONDS\n");
    return 2;
  }
  xcb_connection_t* c = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(c) != 0) {
    std::fprintf(stderr, "class_window: no X server\n");
    return 1;
  }
  xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
  const xcb_window_t window = xcb_generate_id(c);
  xcb_create_window(c, XCB_COPY_FROM_PARENT, window, screen->root, 40, 40, 200, 120, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
  SetText(c, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
          std::string(argv[1]) + '\0' + argv[2] + '\0');
  SetText(c, window, Atom(c, "_NET_WM_NAME"), Atom(c, "UTF8_STRING"), argv[3]);
  xcb_map_window(c, window);
  // A round trip: the window is on the server before anyone is told.
  std::free(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
  std::printf("mapped %u\n", window);
  std::fflush(stdout);
  std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(argv[4])));
  xcb_disconnect(c);
  return 0;
}
