#include "platform/process/session_bus.h"

#include "platform/modules/module_loader.h"

namespace tolvane {

SessionBus& SessionBus::shared() {
  static auto* const bus =
      static_cast<SessionBus*>(ModuleLoader::load("tolvane-session-bus", "tolvaneSessionBus"));
  return *bus;
}

}  // namespace tolvane
