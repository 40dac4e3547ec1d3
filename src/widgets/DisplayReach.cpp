#include "widgets/DisplayReach.h"

#include <QLibrary>
#include <QtGlobal>

namespace vlclientui::widgets {
namespace {

enum class Reach { Yes, No, Untold };

/// As the window system's own libraries connect, which the toolkit loads as well. Untold where they are not
/// there.
Reach reachX() {
  using Connect = void* (*)(const char*, int*);
  using HasError = int (*)(void*);
  using Disconnect = void (*)(void*);
  QLibrary library(QStringLiteral("xcb"), 1);
  const auto connect = reinterpret_cast<Connect>(library.resolve("xcb_connect"));
  const auto hasError = reinterpret_cast<HasError>(library.resolve("xcb_connection_has_error"));
  const auto disconnect = reinterpret_cast<Disconnect>(library.resolve("xcb_disconnect"));
  if (connect == nullptr || hasError == nullptr || disconnect == nullptr) return Reach::Untold;
  void* const connection = connect(nullptr, nullptr);
  const bool isDead = hasError(connection) != 0;
  disconnect(connection);
  return isDead ? Reach::No : Reach::Yes;
}

Reach reachWayland() {
  using Connect = void* (*)(const char*);
  using Disconnect = void (*)(void*);
  QLibrary library(QStringLiteral("wayland-client"), 0);
  const auto connect = reinterpret_cast<Connect>(library.resolve("wl_display_connect"));
  const auto disconnect = reinterpret_cast<Disconnect>(library.resolve("wl_display_disconnect"));
  if (connect == nullptr || disconnect == nullptr) return Reach::Untold;
  void* const display = connect(nullptr);
  if (display == nullptr) return Reach::No;
  disconnect(display);
  return Reach::Yes;
}

}  // namespace

std::string displayProblem() {
#ifdef Q_OS_LINUX
  const QByteArray wanted = qgetenv("QT_QPA_PLATFORM");
  const bool isX = wanted.startsWith("xcb");
  const bool isWayland = wanted.startsWith("wayland");
  // Qt tries one after the other of a list, and a connection that was handed over serves once.
  if (wanted.contains(';') || !qEnvironmentVariableIsEmpty("WAYLAND_SOCKET")) return {};
  if (!wanted.isEmpty() && !isX && !isWayland) return {};
  const bool hasX = !isWayland && !qEnvironmentVariableIsEmpty("DISPLAY");
  const bool hasWayland = !isX && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  if (!hasX && !hasWayland) return "there is no display to show windows on";
  if ((hasX && reachX() != Reach::No) || (hasWayland && reachWayland() != Reach::No)) return {};
  const QByteArray name = qgetenv(hasX ? "DISPLAY" : "WAYLAND_DISPLAY");
  return "the display '" + name.toStdString() + "' cannot be reached";
#else
  return {};
#endif
}

}  // namespace vlclientui::widgets
