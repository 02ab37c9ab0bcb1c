#include "platform/desktop/x11/x_front_application.h"

#include <unistd.h>

#include "platform/desktop/x11/window_class.h"

namespace tolvane {

std::optional<RunningApplication> XFrontApplication::current() const {
  const XWindow window = server_.activeWindow();
  if (window == 0) {
    return std::nullopt;
  }
  const auto processes = server_.numbers(window, "_NET_WM_PID");
  const std::int64_t process = processes.empty() ? 0 : processes.front();
  return RunningApplication{
      WindowClass::bundleOf(server_, window), process, window, process == ::getpid()};
}

bool XFrontApplication::isRunning(const RunningApplication& application) const {
  return server_.exists(static_cast<XWindow>(application.window));
}

void XFrontApplication::activate(const RunningApplication& application) {
  constexpr std::uint32_t fromTheUser = 2;  // what a task bar sends; managers do not refuse it
  server_.tellWindowManager(static_cast<XWindow>(application.window),
                            "_NET_ACTIVE_WINDOW",
                            {fromTheUser, server_.now(), 0, 0, 0});
}

}  // namespace tolvane
