#include "platform/desktop/x11/x_front_application.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unistd.h>

#include <QWindow>
#include <xcb/xproto.h>

#include "platform/files/file_names.h"

namespace tolvane {

namespace {

/// Classes of windows of file managers and of the desktops that they draw, in lower case.
constexpr std::array<std::string_view, 10> fileManagers = {"org.gnome.nautilus",
                                                           "nautilus",
                                                           "dolphin",
                                                           "org.kde.dolphin",
                                                           "nemo",
                                                           "nemo-desktop",
                                                           "thunar",
                                                           "xfdesktop",
                                                           "pcmanfm",
                                                           "pcmanfm-qt"};

/// @param classText WM_CLASS: the window's own name and its class, each ended by a NUL.
std::string bundleOf(std::string_view classText) {
  std::string name;
  while (!classText.empty()) {
    const auto end = std::min(classText.find('\0'), classText.size());
    name = FileNames::lower(classText.substr(0, end));
    if (std::find(fileManagers.begin(), fileManagers.end(), name) != fileManagers.end()) {
      return fileManagerBundle;
    }
    classText.remove_prefix(std::min(end + 1, classText.size()));
  }
  return name;
}

}  // namespace

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
      bundleOf(server_.text(front_, "WM_CLASS")), process, front_, process == ::getpid()};
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
