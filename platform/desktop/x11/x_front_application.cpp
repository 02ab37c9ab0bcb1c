#include "platform/desktop/x11/x_front_application.h"

#include <unistd.h>

#include <QWindow>
#include <xcb/xproto.h>

#include "platform/desktop/x11/window_class.h"

namespace tolvane {

XFrontApplication::XFrontApplication(XServer& server, const QWindow& palette)
    : server_(server), palette_(palette), events_([this](const XEvent& event) { follow(event); }) {
  remember(applicationOf(server.activeWindow()));
}

bool XFrontApplication::isPalette(XWindow window) const {
  return palette_.handle() != nullptr && window == palette_.winId();
}

/// @return nullopt when the window has gone.
std::optional<RunningApplication> XFrontApplication::applicationOf(XWindow window) const {
  if (!server_.exists(window)) {
    return std::nullopt;
  }
  const auto processes = server_.numbers(window, "_NET_WM_PID");
  const std::int64_t process = processes.empty() ? 0 : processes.front();
  return RunningApplication{
      WindowClass::bundleOf(server_, window), process, window, process == ::getpid()};
}

/// Nothing in the moment without an active window while the focus goes from one to another, and
/// none of our own windows: what stands behind the palette outlives them.
void XFrontApplication::remember(const std::optional<RunningApplication>& active) const {
  if (active && !active->isThisProcess) {
    front_ = static_cast<XWindow>(active->window);
  }
}

void XFrontApplication::follow(const XEvent& event) {
  if (event.type != XCB_PROPERTY_NOTIFY) {
    return;
  }
  const auto change = event.as<xcb_property_notify_event_t>();
  if (change.window == server_.root() && change.atom == server_.atom("_NET_ACTIVE_WINDOW")) {
    remember(applicationOf(server_.activeWindow()));
  }
}

std::optional<RunningApplication> XFrontApplication::current() const {
  const XWindow active = server_.activeWindow();
  if (active == 0) {
    front_ = 0;
  } else if (!isPalette(active)) {
    // One that has just gone may have been our own: what was in front before it counts.
    if (auto application = applicationOf(active)) {
      remember(application);
      return application;
    }
  }
  return applicationOf(front_);
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
