#pragma once

#include "platform/desktop/path.h"
#include "platform/desktop/x11/x_server.h"

class QWindow;

namespace tolvane {

/// The shape of a window: what is outside neither is seen nor takes the pointer. With a compositor
/// the shape is left to what the window draws, whose edges are smooth; without one the window is
/// cut. Main thread only.
class XWindowShape {
 public:
  /// Neither is owned; both outlive this object.
  XWindowShape(XServer& server, QWindow& window);

  /// @param shape in the window's coordinates, origin top-left, y down.
  void set(const Path& shape);
  /// Some window managers forget the shape when they map a window, and compositors come and go: to
  /// be called after each mapping.
  void apply();

 private:
  void applyInput();

  XServer& server_;
  QWindow& window_;
  Path shape_;
};

}  // namespace tolvane
