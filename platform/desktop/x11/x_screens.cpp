#include "platform/desktop/x11/x_screens.h"

#include <QGuiApplication>
#include <QScreen>

#include "platform/desktop/struts.h"
#include "platform/desktop/x11/screen_space.h"

namespace tolvane {

namespace {

std::vector<Strut> strutsOfPanels(const XServer& server) {
  std::vector<Strut> struts;
  const Size desktop = server.size(server.root()).value_or(Size());
  const std::vector<XWindow> windows = server.numbers(server.root(), "_NET_CLIENT_LIST");
  const auto parts = server.numbersOfEach(windows, "_NET_WM_STRUT_PARTIAL");
  const auto wholes = server.numbersOfEach(windows, "_NET_WM_STRUT");
  for (std::size_t at = 0; at < windows.size(); ++at) {
    for (const Strut& strut : Strut::parse(parts[at].empty() ? wholes[at] : parts[at], desktop)) {
      struts.push_back(strut);
    }
  }
  return struts;
}

/// Qt knows one working area of the whole desktop, which tells nothing of the single screens when
/// there are several: it is used as it is, and what panels claim of the screen goes off as well.
QRect visibleFrame(const QScreen& screen, const std::vector<Strut>& struts) {
  Rectangle left = ScreenSpace::nativeFrame(screen);
  for (const Strut& strut : struts) {
    left = strut.takenFrom(left);
  }
  const double scale = screen.devicePixelRatio();
  const Point corner = ScreenSpace::pointOn(screen, {left.x, left.y});
  const QRectF points(corner.x, corner.y, left.width / scale, left.height / scale);
  return points.toAlignedRect() & screen.availableGeometry();
}

Screen screenOf(const QScreen& screen, const std::vector<Strut>& struts) {
  return {ScreenSpace::fromQt(screen.geometry()),
          ScreenSpace::fromQt(visibleFrame(screen, struts))};
}

std::optional<Point> middleOf(const XServer& server, XWindow window) {
  const std::optional<Point> corner = server.origin(window);
  const std::optional<Size> size = server.size(window);
  if (!corner || !size) {
    return std::nullopt;
  }
  return Point{corner->x + size->width / 2, corner->y + size->height / 2};
}

}  // namespace

std::vector<Screen> XScreens::all() const {
  const std::vector<Strut> struts = strutsOfPanels(server_);
  std::vector<Screen> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {
    screens.push_back(screenOf(*screen, struts));
  }
  return screens;
}

std::optional<Screen> XScreens::main() const {
  const XWindow active = server_.activeWindow();
  const std::optional<Point> middle = active != 0 ? middleOf(server_, active) : std::nullopt;
  const QScreen* main = QGuiApplication::primaryScreen();
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (middle && ScreenSpace::nativeFrame(*screen).contains(*middle)) {
      main = screen;
      break;
    }
  }
  return main != nullptr ? std::optional(screenOf(*main, strutsOfPanels(server_))) : std::nullopt;
}

}  // namespace tolvane
