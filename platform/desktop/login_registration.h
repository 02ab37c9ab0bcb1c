#pragma once

namespace tolvane {

/// The numbers are those that the settings know.
enum class LoginStatus { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

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
