#pragma once

#include "desktop/desktop_services.h"
#include "platform/desktop/login_registration.h"

namespace tolvane {

/// Turns launching at login on and off. Main thread only.
class LoginService final : public LoginItem {
 public:
  /// @param registration not owned; outlives this object.
  explicit LoginService(LoginRegistration& registration) : registration_(registration) {}

  void setEnabled(bool on) override;
  [[nodiscard]] LoginStatus status() const override { return registration_.status(); }

 private:
  LoginRegistration& registration_;
};

}  // namespace tolvane
