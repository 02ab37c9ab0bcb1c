#pragma once

#include <filesystem>

#include "platform/desktop/login_registration.h"

namespace tolvane {

/// Launches a program at login by an XDG autostart file. Main thread only.
///
/// Without the file the program is not registered. A file that the user has switched off
/// ("Hidden=true", GNOME's "X-GNOME-Autostart-enabled=false" or MATE's
/// "X-MATE-Autostart-enabled=false") requires approval; one whose program is not there, or that
/// cannot be read, counts as not found.
class AutostartEntry final : public LoginRegistration {
 public:
  /// @param file normally UserFolders::configuration() / "autostart/app.tolvane.desktop".
  /// @param program absolute.
  AutostartEntry(std::filesystem::path file, std::filesystem::path program);

  /// Replaces a file that is there, also one that was switched off.
  /// @throws PlatformError when the program is not there or the file cannot be written.
  void registerApplication() override;
  void unregisterApplication() override;
  [[nodiscard]] LoginStatus status() const override;

 private:
  std::filesystem::path file_;
  std::filesystem::path program_;
};

}  // namespace tolvane
