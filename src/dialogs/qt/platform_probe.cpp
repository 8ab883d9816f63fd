#include "dialogs/qt/platform_probe.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QStringList>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

namespace norvik50::qt {
namespace {

std::string Env(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// The platforms Qt tries, in its order: QT_QPA_PLATFORM's list, or else
// Wayland first where a Wayland display or session is announced, then X11.
QStringList Candidates() {
  const QString named = QString::fromLocal8Bit(Env("QT_QPA_PLATFORM"));
  QStringList names;
  for (const QString& entry : named.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
    // "xcb:option=value": the options belong to the platform.
    names << entry.section(QLatin1Char(':'), 0, 0).trimmed();
  }
  names.removeAll(QString());
  if (!names.isEmpty()) return names;
  if (!Env("WAYLAND_DISPLAY").empty() || Env("XDG_SESSION_TYPE") == "wayland") {
    names << QStringLiteral("wayland");
  }
  names << QStringLiteral("xcb");
  return names;
}

bool PluginInstalled(const QString& platform) {
  QStringList folders = QString::fromLocal8Bit(Env("QT_PLUGIN_PATH"))
                            .split(QLatin1Char(':'), Qt::SkipEmptyParts);
  folders << QLibraryInfo::path(QLibraryInfo::PluginsPath);
  for (const QString& folder : folders) {
    if (QFileInfo::exists(folder + QStringLiteral("/platforms/libq") + platform +
                          QStringLiteral(".so"))) {
      return true;
    }
  }
  return false;
}

// The X server named by DISPLAY accepts this process (connection and
// authorisation), as the X11 platform needs it to.
std::string X11Problem() {
  const std::string display = Env("DISPLAY");
  if (display.empty()) return "DISPLAY is not set";
  xcb_connection_t* connection = xcb_connect(display.c_str(), nullptr);
  const int error = xcb_connection_has_error(connection);
  xcb_disconnect(connection);
  if (error == 0) return {};
  return "the X server of DISPLAY=" + display + " cannot be reached (xcb error " +
         std::to_string(error) + ")";
}

// The compositor's socket accepts a connection.
std::string WaylandProblem() {
  std::string socket_path = Env("WAYLAND_DISPLAY");
  if (socket_path.empty()) socket_path = "wayland-0";
  if (socket_path.front() != '/') {
    const std::string runtime = Env("XDG_RUNTIME_DIR");
    if (runtime.empty()) return "XDG_RUNTIME_DIR is not set for the Wayland socket";
    socket_path = runtime + "/" + socket_path;
  }
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (socket_path.size() >= sizeof address.sun_path) return "the Wayland socket path is too long";
  std::memcpy(address.sun_path, socket_path.c_str(), socket_path.size() + 1);
  const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return std::string("no socket: ") + std::strerror(errno);
  const bool connected =
      ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  const int error = errno;
  ::close(fd);
  if (connected) return {};
  return "the Wayland socket " + socket_path + " cannot be reached (" + std::strerror(error) + ")";
}

std::string Problem(const QString& platform) {
  if (!PluginInstalled(platform)) {
    return "Qt has no platform plugin \"" + platform.toStdString() + "\"";
  }
  if (platform == QStringLiteral("xcb")) return X11Problem();
  if (platform == QStringLiteral("wayland")) return WaylandProblem();
  // offscreen and minimal need nothing; the others (framebuffers, VNC)
  // are taken at their word.
  return {};
}

}  // namespace

std::string PlatformProblem() {
  if (QCoreApplication::instance() != nullptr) return {};
  std::string why;
  for (const QString& platform : Candidates()) {
    const std::string problem = Problem(platform);
    if (problem.empty()) return {};
    why += (why.empty() ? "" : "; ") + problem;
  }
  return why;
}

const std::string& PlatformProblemOnce() {
  static const std::string problem = [] {
    std::string why = PlatformProblem();
    if (!why.empty()) std::cerr << "norvik50: no dialogs can be shown: " << why << '\n';
    return why;
  }();
  return problem;
}

}  // namespace norvik50::qt
