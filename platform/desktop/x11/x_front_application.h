#pragma once

#include "platform/desktop/front_application.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// The application of the active window, as the window manager tells it. The handle is that window.
class XFrontApplication final : public FrontApplication {
 public:
  /// @param server not owned; outlives this object.
  explicit XFrontApplication(XServer& server) : server_(server) {}

  [[nodiscard]] std::optional<RunningApplication> current() const override;
  [[nodiscard]] bool isRunning(const RunningApplication& application) const override;
  void activate(const RunningApplication& application) override;

 private:
  XServer& server_;
};

}  // namespace tolvane
