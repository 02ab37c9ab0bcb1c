#include "platform/desktop/x11/x_screens.h"

#include <QGuiApplication>
#include <QScreen>
#include <xcb/xcb.h>

#include "platform/desktop/x11/screen_space.h"
#include "platform/desktop/x11/x_reply.h"

namespace tolvane {

namespace {

Screen screenOf(const QScreen& screen) {
  return {ScreenSpace::fromQt(screen.geometry()), ScreenSpace::fromQt(screen.availableGeometry())};
}

/// In the server's pixels.
QPoint middleOf(const XServer& server, XWindow window) {
  xcb_connection_t* connection = server.connection();
  const auto geometryAsked = xcb_get_geometry(connection, window);
  const auto cornerAsked = xcb_translate_coordinates(connection, window, server.root(), 0, 0);
  const XReply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(connection, geometryAsked, nullptr));
  const XReply<xcb_translate_coordinates_reply_t> corner(
      xcb_translate_coordinates_reply(connection, cornerAsked, nullptr));
  if (!geometry || !corner) {
    return {-1, -1};
  }
  return {corner->dst_x + geometry->width / 2, corner->dst_y + geometry->height / 2};
}

/// A screen's frame in the server's pixels: its corner is not scaled, its size is.
QRect nativeFrame(const QScreen& screen) {
  const QRect frame = screen.geometry();
  return {frame.topLeft(), frame.size() * screen.devicePixelRatio()};
}

}  // namespace

std::vector<Screen> XScreens::all() const {
  std::vector<Screen> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {
    screens.push_back(screenOf(*screen));
  }
  return screens;
}

std::optional<Screen> XScreens::main() const {
  const XWindow active = server_.activeWindow();
  const QPoint middle = active != 0 ? middleOf(server_, active) : QPoint(-1, -1);
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (nativeFrame(*screen).contains(middle)) {
      return screenOf(*screen);
    }
  }
  const QScreen* primary = QGuiApplication::primaryScreen();
  return primary != nullptr ? std::optional(screenOf(*primary)) : std::nullopt;
}

}  // namespace tolvane
