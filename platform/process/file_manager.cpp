#include "platform/process/file_manager.h"

#include "platform/files/platform_error.h"
#include "platform/modules/module_loader.h"
#include "platform/process/session_bus.h"

namespace tolvane::FileManager {

bool reveal(const std::vector<std::filesystem::path>& files) noexcept {
  try {
    static auto* const bus =
        static_cast<SessionBus*>(ModuleLoader::load("tolvane-session-bus", "tolvaneSessionBus"));
    return bus->showItems(files);
  } catch (const PlatformError&) {
    return false;  // an installation without the module has no D-Bus either
  }
}

}  // namespace tolvane::FileManager
