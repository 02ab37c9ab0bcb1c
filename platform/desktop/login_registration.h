#pragma once

#include "platform/desktop/login_status.h"

namespace tolvane {

/// Registers this application to be launched at login. Main thread only.
class LoginRegistration {
 public:
  LoginRegistration() = default;
  virtual ~LoginRegistration() = default;
  LoginRegistration(const LoginRegistration&) = delete;
  LoginRegistration& operator=(const LoginRegistration&) = delete;

  /// @throws PlatformError when the system refuses.
  virtual void registerApplication() = 0;
  /// Also when it is not registered. @throws PlatformError when the system refuses.
  virtual void unregisterApplication() = 0;
  [[nodiscard]] virtual LoginStatus status() const = 0;
};

}  // namespace tolvane
