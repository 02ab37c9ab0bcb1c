#pragma once

#include <filesystem>
#include <vector>

#include "platform/process/activation.h"

namespace tolvane {

/// What the module tolvane-session-bus does. It is loaded on demand, because GIO takes 3 ms to
/// load.
class SessionBus {
 public:
  SessionBus() = default;
  virtual ~SessionBus() = default;
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;

  /// Calls ShowItems of org.freedesktop.FileManager1 without waiting for the answer.
  /// @return false when there is no session bus, or nobody on it who answers to that name.
  virtual bool showItems(const std::vector<std::filesystem::path>& files) = 0;

  /// Calls Open of the desktop host, or Activate without files, and does not wait for the answer.
  /// @param activation passed on as the call's platform data.
  /// @return false when there is no session bus, or no desktop host on it.
  virtual bool openInDesktopHost(const std::vector<std::filesystem::path>& files,
                                 const Activation& activation) = 0;

  /// Loads the module at the first call.
  /// @throws PlatformError when it is missing.
  [[nodiscard]] static SessionBus& shared();
};

}  // namespace tolvane
