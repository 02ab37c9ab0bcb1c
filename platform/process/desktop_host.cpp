#include "platform/process/desktop_host.h"

#include "platform/files/platform_error.h"
#include "platform/process/session_bus.h"

namespace tolvane::DesktopHost {

bool open(const std::vector<std::filesystem::path>& files, const Activation& activation) noexcept {
  try {
    return SessionBus::shared().openInDesktopHost(files, activation);
  } catch (const PlatformError&) {
    return false;  // an installation without the module has no D-Bus either
  }
}

}  // namespace tolvane::DesktopHost
