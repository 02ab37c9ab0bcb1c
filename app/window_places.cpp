#include "app/window_places.h"

#include <vector>

namespace tolvane {

std::optional<WindowPlace> windowPlace(const XServer& server, XWindow window) {
  std::optional<Point> origin = server.origin(window);
  if (!origin) {
    return std::nullopt;
  }
  // Around what it shows, such a window has a border for its shadow: left, right, top, bottom.
  const std::vector<std::uint32_t> border = server.numbers(window, "_GTK_FRAME_EXTENTS");
  if (border.size() == 4) {
    origin->x += border[0];
    origin->y += border[2];
  }
  return WindowPlace{*origin, server.text(window, "_GTK_WINDOW_OBJECT_PATH")};
}

}  // namespace tolvane
