#pragma once

#include <functional>

#include "platform/desktop/geometry.h"

namespace tolvane {

/// Where a pointer event went.
enum class PointerTarget { otherApplication, palettePanel, otherOwnWindow };

struct PointerEvent {
  Point location;  ///< on the screen
  PointerTarget target = PointerTarget::otherApplication;
};

/// The pointer and its passive monitors. Main thread only.
class Pointer {
 public:
  using Handler = std::function<void(const PointerEvent& event)>;

  Pointer() = default;
  virtual ~Pointer() = default;
  Pointer(const Pointer&) = delete;
  Pointer& operator=(const Pointer&) = delete;

  [[nodiscard]] virtual Point location() const = 0;

  /// Tells of every press of the left or right button and of every move, in this application and
  /// in others. The events go on to where they went. While the palette is not visible, events may
  /// be left out; so may moves where the panel itself lets events through.
  virtual void startMonitoring(Handler pressed, Handler moved) = 0;
  /// Neither handler is called any more.
  virtual void stopMonitoring() = 0;
};

}  // namespace tolvane
