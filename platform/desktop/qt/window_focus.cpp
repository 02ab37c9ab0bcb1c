#include "platform/desktop/qt/window_focus.h"

#include <QWindow>

namespace tolvane::WindowFocus {

void showInFront(QWindow& window, XServer& server, Workspaces workspaces) {
  constexpr const char* workspace = "_NET_WM_DESKTOP";
  constexpr const char* userTime = "_NET_WM_USER_TIME";
  constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
  const auto handle = static_cast<XWindow>(window.winId());
  const XTime time = server.userTime();
  server.setNumbers(handle, userTime, {time});
  if (workspaces == Workspaces::all) {
    server.setNumbers(handle, workspace, {everyWorkspace});
  }
  window.show();
  server.setNumbers(handle, userTime, {time});  // Qt has put the time of its last event there
  window.raise();
  constexpr std::uint32_t fromAnApplication = 1;
  if (workspaces == Workspaces::all) {
    // Some managers take the property back when they map the window; none does so with a message.
    server.tellWindowManager(handle, workspace, {everyWorkspace, fromAnApplication, 0, 0, 0});
  }
  // Qt would ask with the time of its last event, which may be long ago.
  server.tellWindowManager(handle, "_NET_ACTIVE_WINDOW", {fromAnApplication, time, 0, 0, 0});
}

}  // namespace tolvane::WindowFocus
