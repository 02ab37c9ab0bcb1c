#pragma once

#include <optional>

#include "app/desktop_platform.h"
#include "app/termination_signals.h"
#include "bridge/bridge.h"
#include "interface/interface_view.h"
#include "platform/desktop/accessibility/accessibility.h"
#include "platform/desktop/qt/desktop_bus_name.h"
#include "platform/desktop/qt/tray_icon.h"

namespace tolvane {

/// The desktop host's long-lived objects, from the launch to the end of the process. It has no
/// window of its own beside the palette and the settings: its place is in the tray. Main thread
/// only.
class AppDelegate {
 public:
  /// @param signals not owned; outlive this object.
  explicit AppDelegate(TerminationSignals& signals) : signals_(signals) {}
  ~AppDelegate() = default;
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;

  /// Builds everything: palette, bridge with its services and the global shortcut, tray icon.
  /// @throws PlatformError without an X server.
  void applicationDidFinishLaunching();

  /// Shows the palette with what is selected in the file manager.
  void openPalette();
  /// Shows the palette with files that were handed over, or with what is selected.
  void follow(const DesktopBusName::Request& request);

  /// Ends the program: at once, or as soon as a running job has noticed that it is cancelled, for
  /// which it has ten seconds.
  void applicationShouldTerminate();

 private:
  TerminationSignals& signals_;
  MessengerPair messengers_;
  Accessibility accessibility_;
  std::optional<InterfaceView> interface_;
  std::optional<DesktopPlatform> platform_;
  std::optional<Bridge> bridge_;
  std::optional<TrayIcon> statusItem_;
};

}  // namespace tolvane
