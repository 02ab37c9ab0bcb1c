#include "platform/process/file_manager.h"

#include "platform/files/platform_error.h"
#include "platform/process/session_bus.h"

namespace tolvane::FileManager {

bool reveal(const std::vector<std::filesystem::path>& files) noexcept {
  try {
    return SessionBus::shared().showItems(files);
  } catch (const PlatformError&) {
    return false;  // an installation without the module has no D-Bus either
  }
}

}  // namespace tolvane::FileManager
