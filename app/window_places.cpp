#include "app/window_places.h"

#include <vector>

#include "platform/desktop/x11/screen_space.h"

namespace tolvane {

std::optional<WindowPlace> windowPlace(const XServer& server, XWindow window) {
  std::optional<Point> corner = server.origin(window);
  if (!corner) {
    return std::nullopt;
  }
  // Around what it shows, such a window has a border for its shadow, in pixels: left, right, top,
  // bottom.
  const std::vector<std::uint32_t> border = server.numbers(window, "_GTK_FRAME_EXTENTS");
  if (border.size() == 4) {
    corner->x += border[0];
    corner->y += border[2];
  }
  return WindowPlace{ScreenSpace::pointOf(*corner),
                     server.text(window, "_NET_WM_NAME"),
                     server.text(window, "_GTK_WINDOW_OBJECT_PATH")};
}

}  // namespace tolvane
