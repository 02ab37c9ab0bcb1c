#pragma once

#include <cstdint>
#include <functional>

namespace tolvane {

/// A key by its place on an ANSI keyboard, with modifiers.
struct HotKey {
  // Virtual key codes: each stands for the place of its letter, whatever the layout has there.
  static constexpr std::uint32_t keyF = 3;
  static constexpr std::uint32_t keyX = 7;
  static constexpr std::uint32_t keyC = 8;
  static constexpr std::uint32_t keyV = 9;
  static constexpr std::uint32_t keyK = 40;
  // Modifiers; several are added up.
  static constexpr std::uint32_t option = 2048;  ///< the Alt key
  static constexpr std::uint32_t control = 4096;

  std::uint32_t virtualKeyCode = 0;
  std::uint32_t modifiers = 0;

  friend bool operator==(const HotKey&, const HotKey&) = default;
};

/// Keys that reach this process whichever application is in front. Main thread only.
class HotKeys {
 public:
  using Reference = std::uint32_t;
  struct Registration {
    int status = 0;           ///< 0, or the system's code for its refusal
    Reference reference = 0;  ///< meaningful when the status is 0
  };

  HotKeys() = default;
  virtual ~HotKeys() = default;
  HotKeys(const HotKeys&) = delete;
  HotKeys& operator=(const HotKeys&) = delete;

  /// Several keys may be registered at a time. A key that is refused is refused as a whole.
  [[nodiscard]] virtual Registration registerKey(const HotKey& key) = 0;
  virtual void unregisterKey(Reference reference) = 0;
  /// @param pressed called on the main thread whenever a registered key was pressed; an empty one
  /// takes the last one back.
  virtual void onPressed(std::function<void()> pressed) = 0;
};

}  // namespace tolvane
