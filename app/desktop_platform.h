#pragma once

#include "desktop/desktop_services.h"
#include "platform/desktop/accessibility_tree.h"
#include "platform/desktop/autostart_entry.h"
#include "platform/desktop/desktop_settings_programs.h"
#include "platform/desktop/file_manager_selection.h"
#include "platform/desktop/file_user_defaults.h"
#include "platform/desktop/qt/login_wake_notices.h"
#include "platform/desktop/qt/qt_content_view.h"
#include "platform/desktop/qt/qt_file_drop_view.h"
#include "platform/desktop/qt/qt_main_queue.h"
#include "platform/desktop/qt/qt_palette_panel.h"
#include "platform/desktop/qt/qt_settings_window.h"
#include "platform/desktop/qt/session_permissions.h"
#include "platform/desktop/x11/raw_input.h"
#include "platform/desktop/x11/x_event_taps.h"
#include "platform/desktop/x11/x_front_application.h"
#include "platform/desktop/x11/x_hot_keys.h"
#include "platform/desktop/x11/x_pointer.h"
#include "platform/desktop/x11/x_screens.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// Everything of the session on the X server that the desktop's rules speak to. Main thread only.
class DesktopPlatform {
 public:
  /// How files and elements of other applications are found.
  struct Accessibility {
    FileManagerSelection& selection;
    AccessibilityTree& tree;
  };

  /// @param interface what the palette shows. Nothing is owned; all outlive this object.
  /// @throws PlatformError without an X server.
  DesktopPlatform(QQuickItem& interface, const Accessibility& accessibility);

  /// The services of a bridge; they must go before this object.
  [[nodiscard]] DesktopServices services();

  [[nodiscard]] MainQueue& mainQueue() { return main_; }
  [[nodiscard]] XServer& server() { return server_; }

 private:
  Accessibility accessibility_;
  QtMainQueue main_;
  XServer server_;
  RawInput input_{server_};
  QtPalettePanel panel_{server_};
  QtSettingsWindow settingsWindow_{server_};
  QtContentView content_;
  QtFileDropView dropView_{panel_.window(), settingsWindow_.window()};
  XScreens screens_{server_};
  XPointer pointer_{server_, input_, panel_.window()};
  XFrontApplication frontApplication_{server_, panel_.window()};
  XHotKeys hotKeys_{server_};
  XEventTaps taps_{server_, input_, frontApplication_};
  SessionPermissions permissions_{input_};
  LoginWakeNotices wakeNotices_;
  DesktopSettingsPrograms systemSettings_;
  FileUserDefaults defaults_;
  AutostartEntry autostart_;
};

}  // namespace tolvane
