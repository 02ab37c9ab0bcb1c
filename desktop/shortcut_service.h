#pragma once

#include <functional>
#include <optional>
#include <string>

#include "desktop/desktop_services.h"
#include "platform/desktop/hot_keys.h"
#include "platform/desktop/user_defaults.h"

namespace tolvane {

/// The one global shortcut: Control–Option and a letter of C, X, V, F and K. The letter is kept
/// for the next launch. Main thread only.
class ShortcutService : public Shortcut {
 public:
  /// Registers nothing yet. Neither is owned; both outlive this object.
  ShortcutService(HotKeys& hotKeys, UserDefaults& defaults);
  /// Releases the hot key.
  ~ShortcutService() override;
  ShortcutService(const ShortcutService&) = delete;
  ShortcutService& operator=(const ShortcutService&) = delete;

  /// When the system refuses the new key, the old one stays registered.
  bool registerKey(const std::optional<std::string>& key) override;
  [[nodiscard]] std::string key() const override { return key_; }
  [[nodiscard]] std::string status() const override { return status_; }
  void onTrigger(std::function<void()> trigger) override;

 private:
  HotKeys& hotKeys_;
  UserDefaults& defaults_;
  std::optional<HotKeys::Reference> hotKey_;  // owned
  std::function<void()> onTrigger_;
  std::string status_ = "Not registered";
  std::string key_;
};

}  // namespace tolvane
