#pragma once

#include "platform/desktop/x11/x_server.h"

class QWindow;

/// What window managers ask for before they give a window the keyboard.
namespace tolvane::WindowFocus {

enum class Workspaces { current, all };

/// Shows the window in front of all others and gives it the keyboard. It counts as what the user
/// has just asked for: managers keep the focus from windows that show up on their own.
void showInFront(QWindow& window, XServer& server, Workspaces workspaces);

}  // namespace tolvane::WindowFocus
