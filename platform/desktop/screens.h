#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/desktop/geometry.h"

namespace tolvane {

struct Screen {
  Rectangle frame;
  Rectangle visibleFrame;  ///< without panels and docks

  friend bool operator==(const Screen&, const Screen&) = default;
};

/// The screens as they are now. Main thread only.
class Screens {
 public:
  Screens() = default;
  virtual ~Screens() = default;
  Screens(const Screens&) = delete;
  Screens& operator=(const Screens&) = delete;

  /// The primary one first; its frame has the origin (0, 0). May be empty.
  [[nodiscard]] virtual std::vector<Screen> all() const = 0;
  /// The one that has the keyboard focus; the primary one when that is not known; none without
  /// screens.
  [[nodiscard]] virtual std::optional<Screen> main() const = 0;

  /// The first one whose frame holds the point, else main().
  [[nodiscard]] std::optional<Screen> holding(Point point) const {
    const std::vector<Screen> screens = all();
    const auto found = std::find_if(screens.begin(), screens.end(), [point](const Screen& screen) {
      return screen.frame.contains(point);
    });
    return found != screens.end() ? *found : main();
  }
};

}  // namespace tolvane
