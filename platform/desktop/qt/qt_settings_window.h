#pragma once

#include "platform/desktop/qt/content_window.h"
#include "platform/desktop/settings_window.h"
#include "platform/desktop/x11/x_screens.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// The settings in a window with the manager's own title bar.
class QtSettingsWindow final : public SettingsWindow {
 public:
  /// @param server not owned; outlives this object.
  explicit QtSettingsWindow(XServer& server);

  [[nodiscard]] ContentWindow& window() { return window_; }

  void onDismiss(std::function<void()> dismiss) override { window_.onDismiss(std::move(dismiss)); }
  /// Smaller while the screen has less room.
  void setContentSize(Size size) override;
  [[nodiscard]] bool isVisible() const override { return window_.isVisible(); }
  void centreAndMakeKey() override;
  void orderOut() override { window_.hide(); }

 private:
  XServer& server_;
  XScreens screens_;
  ContentWindow window_;
  QSize wanted_;
};

}  // namespace tolvane
