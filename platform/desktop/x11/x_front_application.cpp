#include "platform/desktop/x11/x_front_application.h"

#include <unistd.h>

#include <QWindow>
#include <xcb/xproto.h>

#include "platform/desktop/x11/window_class.h"

namespace tolvane {

XFrontApplication::XFrontApplication(XServer& server, const QWindow& palette)
    : server_(server),
      palette_(palette),
      front_(server.activeWindow()),
      events_([this](const XEvent& event) { follow(event); }) {}

bool XFrontApplication::isPalette(XWindow window) const {
  return palette_.handle() != nullptr && window == palette_.winId();
}

void XFrontApplication::follow(const XEvent& event) {
  if (event.type != XCB_PROPERTY_NOTIFY) {
    return;
  }
  const auto change = event.as<xcb_property_notify_event_t>();
  if (change.window == server_.root() && change.atom == server_.atom("_NET_ACTIVE_WINDOW")) {
    const XWindow active = server_.activeWindow();
    // None is active for a moment while the focus goes from one to the other.
    if (active != 0 && !isPalette(active)) {
      front_ = active;
    }
  }
}

std::optional<RunningApplication> XFrontApplication::current() const {
  const XWindow active = server_.activeWindow();
  if (!isPalette(active)) {
    front_ = active;
  }
  if (front_ == 0 || !server_.exists(front_)) {
    return std::nullopt;
  }
  const auto processes = server_.numbers(front_, "_NET_WM_PID");
  const std::int64_t process = processes.empty() ? 0 : processes.front();
  return RunningApplication{
      WindowClass::bundleOf(server_, front_), process, front_, process == ::getpid()};
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
