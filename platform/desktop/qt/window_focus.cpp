#include "platform/desktop/qt/window_focus.h"

#include <QWindow>

namespace tolvane::WindowFocus {

void showInFront(QWindow& window, XServer& server, Workspaces workspaces) {
  constexpr const char* workspace = "_NET_WM_DESKTOP";
  constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
  const auto handle = static_cast<XWindow>(window.winId());
  server.setNumber(handle, "_NET_WM_USER_TIME", server.userTime());
  if (workspaces == Workspaces::all) {
    server.setNumber(handle, workspace, everyWorkspace);
  }
  window.show();
  window.raise();
  if (workspaces == Workspaces::all) {
    // Some managers take the property back when they map the window; none does so with a message.
    constexpr std::uint32_t fromAnApplication = 1;
    server.tellWindowManager(handle, workspace, {everyWorkspace, fromAnApplication, 0, 0, 0});
  }
  window.requestActivate();
}

}  // namespace tolvane::WindowFocus
