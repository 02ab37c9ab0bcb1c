#pragma once

#include <map>

#include "platform/desktop/hot_keys.h"
#include "platform/desktop/x11/key_repetition.h"
#include "platform/desktop/x11/x_event_filter.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// Passive grabs of keys, by their place on the keyboard, whatever locks are on. A key that is held
/// down is pressed once.
class XHotKeys final : public HotKeys {
 public:
  /// The status of a key that has no place on the keyboards of X servers: BadValue.
  static constexpr int unknownKey = 2;
  /// The status of every key on a Wayland desktop, which keeps keys to itself: ENOTSUP. The first
  /// one that is free is taken all the same, for the windows of other X programs; those after it
  /// are not, because they are refused, and what is refused does not take the place of another.
  static constexpr int keptByWayland = 95;

  /// @param server not owned; outlives this object.
  explicit XHotKeys(XServer& server);
  ~XHotKeys() override;
  XHotKeys(const XHotKeys&) = delete;
  XHotKeys& operator=(const XHotKeys&) = delete;

  /// Status 10 (BadAccess): another program has the key.
  [[nodiscard]] Registration registerKey(const HotKey& key) override;
  void unregisterKey(Reference reference) override;
  void onPressed(std::function<void()> pressed) override { pressed_ = std::move(pressed); }

 private:
  struct Grab {
    std::uint8_t keyCode;
    std::uint16_t modifiers;
  };

  [[nodiscard]] Registration take(const Grab& wanted);
  [[nodiscard]] int grab(const Grab& wanted);
  void ungrab(const Grab& taken);
  void seen(const XEvent& event);

  XServer& server_;
  std::map<Reference, Grab> grabs_;
  Reference lastReference_ = 0;
  Reference belowWayland_ = 0;  // 0 when there is none
  KeyRepetition repetition_;
  std::function<void()> pressed_;
  XEventFilter filter_;
};

}  // namespace tolvane
