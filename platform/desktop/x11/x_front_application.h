#pragma once

#include "platform/desktop/front_application.h"
#include "platform/desktop/x11/x_event_filter.h"
#include "platform/desktop/x11/x_server.h"

class QWindow;

namespace tolvane {

/// The application of the active window, as the window manager tells it. The handle is that window.
/// The palette takes the keyboard, but not the front: while it is active, the window of another
/// process that was so before it counts.
class XFrontApplication final : public FrontApplication {
 public:
  /// Neither is owned; both outlive this object.
  XFrontApplication(XServer& server, const QWindow& palette);

  [[nodiscard]] std::optional<RunningApplication> current() const override;
  [[nodiscard]] bool isRunning(const RunningApplication& application) const override;
  void activate(const RunningApplication& application) override;

 private:
  [[nodiscard]] bool isPalette(XWindow window) const;
  [[nodiscard]] std::optional<RunningApplication> applicationOf(XWindow window) const;
  void remember(const std::optional<RunningApplication>& active) const;
  void follow(const XEvent& event);

  XServer& server_;
  const QWindow& palette_;
  // Of another process. What current() has seen may not have been told yet.
  mutable XWindow front_ = 0;
  XEventFilter events_;
};

}  // namespace tolvane
