#pragma once

#include <QDBusVariant>
#include <QObject>

#include "platform/desktop/user_permissions.h"
#include "platform/desktop/x11/raw_input.h"

namespace tolvane {

/// What a session on the X server tells: whether applications show their elements to others,
/// whether the server reports raw input, and whether the desktop animates. No desktop has a key for
/// less transparency. Where there is no session bus, nothing is granted and motion is not reduced.
class SessionPermissions final : public QObject, public UserPermissions {
  Q_OBJECT

 public:
  /// @param input not owned; outlives this object.
  explicit SessionPermissions(const RawInput& input);

  /// Takes a millisecond; 0.1 s when the accessibility bus is stuck.
  [[nodiscard]] bool isTrustedForAccessibility() const override;
  /// Grants it: applications that start afterwards show their elements, most others at once.
  void requestAccessibility() override;
  [[nodiscard]] bool canListenToInput() const override { return input_.isAvailable(); }
  bool requestInputListening() override { return canListenToInput(); }
  [[nodiscard]] bool reducesMotion() const override { return reducesMotion_; }
  [[nodiscard]] bool reducesTransparency() const override { return false; }

 private:
  Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
  void readMotion();

  const RawInput& input_;
  bool reducesMotion_ = false;
};

}  // namespace tolvane
