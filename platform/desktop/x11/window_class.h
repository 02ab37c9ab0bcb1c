#pragma once

#include <string>

#include "platform/desktop/x11/x_server.h"

/// Which application a window belongs to, as far as it tells.
namespace tolvane::WindowClass {

/// @return fileManagerBundle for windows of file managers and of the desktops that they draw; else
/// the class in lower case; empty when the window has none, as those inside an application's.
[[nodiscard]] std::string bundleOf(const XServer& server, XWindow window);

}  // namespace tolvane::WindowClass
