#pragma once

#include <string>

#include "desktop/desktop_services.h"
#include "platform/desktop/system_settings.h"
#include "platform/desktop/user_permissions.h"

namespace tolvane {

/// Tells what the user allows, and leads to the settings that change it. Main thread only.
class PermissionCoordinator final : public Permissions {
 public:
  /// Neither is owned; both outlive this object.
  PermissionCoordinator(UserPermissions& permissions, SystemSettings& settings)
      : permissions_(permissions), settings_(settings) {}

  [[nodiscard]] PermissionState state() const override;
  void open(const std::string& section) override;
  void requestAccessibility() override { permissions_.requestAccessibility(); }

 private:
  UserPermissions& permissions_;
  SystemSettings& settings_;
};

}  // namespace tolvane
