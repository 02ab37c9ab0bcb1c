#pragma once

#include "desktop/desktop_services.h"

namespace tolvane {

/// The services of a host without a desktop of its own. Results can still be revealed, opened and
/// copied where the session has the programs for it; everything else answers, in the services' own
/// words, that it is not available: panels are cancelled at once, no shortcut can be registered,
/// the gesture stays off, no permission is granted and launch at login is refused.
[[nodiscard]] DesktopServices unavailableServices();

}  // namespace tolvane
