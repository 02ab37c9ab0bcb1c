#include "app/desktop_platform.h"

#include <filesystem>

#include "app/desktop_panels.h"
#include "app/desktop_results.h"
#include "desktop/finder_selection_service.h"
#include "desktop/login_service.h"
#include "desktop/palette_window_service.h"
#include "desktop/permission_coordinator.h"
#include "desktop/pointer_gesture_service.h"
#include "desktop/shortcut_service.h"
#include "platform/desktop/user_folders.h"

namespace tolvane {

DesktopPlatform::DesktopPlatform(QQuickItem& interface, const Accessibility& accessibility)
    : accessibility_(accessibility),
      content_(interface, panel_, settingsWindow_),
      defaults_(UserFolders::configuration() / "tolvane" / "settings.json"),
      autostart_(UserFolders::configuration() / "autostart" / "app.tolvane.desktop",
                 std::filesystem::read_symlink("/proc/self/exe")) {}

DesktopServices DesktopPlatform::services() {
  DesktopServices services;
  services.palette =
      std::make_unique<PaletteWindowService>(PaletteWindowService::Surroundings{panel_,
                                                                                settingsWindow_,
                                                                                content_,
                                                                                dropView_,
                                                                                screens_,
                                                                                pointer_,
                                                                                frontApplication_,
                                                                                permissions_});
  services.panels = std::make_unique<DesktopPanels>(panel_.window(), server_);
  services.shortcut = std::make_unique<ShortcutService>(hotKeys_, defaults_);
  services.gesture = std::make_unique<PointerGestureService>(PointerGestureService::Surroundings{
      taps_, permissions_, frontApplication_, wakeNotices_, main_});
  services.finder = std::make_unique<FinderSelectionService>(FinderSelectionService::Surroundings{
      frontApplication_, accessibility_.selection, accessibility_.tree, permissions_, screens_});
  services.permissions = std::make_unique<PermissionCoordinator>(permissions_, systemSettings_);
  services.login = std::make_unique<LoginService>(autostart_);
  services.results = std::make_unique<DesktopResults>();
  return services;
}

}  // namespace tolvane
