#pragma once

namespace tolvane {

/// What the user allows this process and prefers, as it is now. Main thread only.
class UserPermissions {
 public:
  UserPermissions() = default;
  virtual ~UserPermissions() = default;
  UserPermissions(const UserPermissions&) = delete;
  UserPermissions& operator=(const UserPermissions&) = delete;

  /// Whether elements of other applications may be read. Never prompts.
  [[nodiscard]] virtual bool isTrustedForAccessibility() const = 0;
  /// Asks for it when it is missing; does not wait for an answer.
  virtual void requestAccessibility() = 0;

  /// Whether input events of the whole session may be listened to. Never prompts.
  [[nodiscard]] virtual bool canListenToInput() const = 0;
  /// Asks for it. @return whether it is granted now.
  virtual bool requestInputListening() = 0;

  [[nodiscard]] virtual bool reducesMotion() const = 0;
  [[nodiscard]] virtual bool reducesTransparency() const = 0;
};

}  // namespace tolvane
