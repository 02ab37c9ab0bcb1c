#pragma once

#include "platform/desktop/system_settings.h"

namespace tolvane {

/// Opens the page of the desktop's own settings program that comes nearest: accessibility for
/// Privacy_Accessibility, its first page for the others, which have no page on Linux.
class DesktopSettingsPrograms final : public SystemSettings {
 public:
  [[nodiscard]] std::string privacyLink() const override { return "tolvane-settings://privacy"; }
  /// Does nothing where none of the known settings programs is installed.
  void open(const std::string& link) override;
};

}  // namespace tolvane
