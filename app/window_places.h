#pragma once

#include <optional>

#include "platform/desktop/accessibility/accessibility.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// What the search for the selected file needs to know of the window in front.
[[nodiscard]] std::optional<WindowPlace> windowPlace(const XServer& server, XWindow window);

}  // namespace tolvane
