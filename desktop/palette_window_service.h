#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "desktop/desktop_services.h"
#include "platform/desktop/content_view.h"
#include "platform/desktop/file_drop_view.h"
#include "platform/desktop/front_application.h"
#include "platform/desktop/palette_panel.h"
#include "platform/desktop/pointer.h"
#include "platform/desktop/screens.h"
#include "platform/desktop/settings_window.h"
#include "platform/desktop/user_permissions.h"

namespace tolvane {

/// The palette: where it appears, how large it is at each stage, where clicks go through it, what
/// dismisses it and who has the focus afterwards. Main thread only.
class PaletteWindowService final : public Palette {
 public:
  /// The desktop that the palette stands on. Nothing is owned; all outlive the service.
  struct Surroundings {
    PalettePanel& panel;
    SettingsWindow& settingsWindow;
    ContentView& content;  ///< in the panel
    FileDropView& dropView;
    const Screens& screens;
    Pointer& pointer;
    FrontApplication& frontApplication;
    const UserPermissions& permissions;
  };

  /// Hidden at first.
  explicit PaletteWindowService(const Surroundings& surroundings);
  /// No handler of the service is called any more.
  ~PaletteWindowService() override;
  PaletteWindowService(const PaletteWindowService&) = delete;
  PaletteWindowService& operator=(const PaletteWindowService&) = delete;

  /// While this application is in front itself, the one that had the focus before stays remembered.
  void beginInvocation(const std::optional<Rectangle>& fileFrame) override;
  void present(const PaletteStage& stage) override;
  void show() override;
  void hide() override;
  void suspendDismissal() override { suspendsDismissal_ = true; }
  void resumeDismissal() override { suspendsDismissal_ = false; }
  void onSettingsDismissed(std::function<void()> dismissed) override;
  void onFiles(std::function<void(Files)> dropped) override;

 private:
  void presentSettings();
  void takeSizesOf(const PaletteStage& stage);
  void restorePalette();
  void updateMaterialMask();
  void updatePassThrough(Point pointer);
  void pressed(const PointerEvent& event);
  void moved(const PointerEvent& event);
  void orderOut();
  void settingsDismissed();
  [[nodiscard]] Rectangle visibleArea() const;
  [[nodiscard]] Rectangle frameWithin(const Rectangle& visible) const;
  [[nodiscard]] bool isOnBackdrop(Point point) const;
  [[nodiscard]] bool containsInteractivePoint(Point point) const;
  [[nodiscard]] bool isOnPalette(const PointerEvent& event) const;
  [[nodiscard]] bool isOpenToDismissal() const;

  Surroundings desktop_;
  bool radialMode_ = false;
  std::int64_t radialActionCount_ = 0;
  Path backdropMask_;
  double preferredHeight_ = 270;
  double preferredWidth_ = 360;
  Point invocationPoint_;
  std::optional<Rectangle> fileFrame_;
  bool suspendsDismissal_ = false;
  bool isContentInSettings_ = false;
  std::function<void()> onSettingsDismissed_;
  std::optional<RunningApplication> previousApp_;
};

}  // namespace tolvane
