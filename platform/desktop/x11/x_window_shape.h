#pragma once

#include "platform/desktop/path.h"
#include "platform/desktop/x11/x_compositor.h"
#include "platform/desktop/x11/x_server.h"

class QWindow;

namespace tolvane {

/// The shape of a window. Where windows are blended it is left to what the window draws, whose
/// edges are smooth; elsewhere the window is cut. Main thread only.
class XWindowShape {
 public:
  /// Paths in the window's coordinates, origin top-left, y down.
  struct Parts {
    Path seen;    ///< the ground; what is blurred lies behind it
    Path taking;  ///< the pointer goes through the rest, and through what is cut off
    Blending blending = Blending::none;
  };

  /// Neither is owned; both outlive this object.
  XWindowShape(XServer& server, QWindow& window);

  void set(Parts parts);
  /// Some window managers forget the shape when they map a window: to be called after each mapping.
  void apply();

 private:
  void applyInput();
  void applyBlur();

  XServer& server_;
  QWindow& window_;
  Parts parts_;
};

}  // namespace tolvane
