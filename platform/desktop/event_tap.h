#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace tolvane {

/// An input event, or a notice about the tap itself.
struct TapEvent {
  static constexpr std::uint32_t secondaryMouseDown = 3;
  static constexpr std::uint32_t disabledByTimeout = 0xFFFFFFFE;
  static constexpr std::uint32_t disabledByUserInput = 0xFFFFFFFF;
  static constexpr std::uint64_t secondaryPresses = 1U << secondaryMouseDown;  ///< of a mask
  static constexpr std::uint64_t shift = 0x20000;                              ///< of `flags`

  std::uint32_t type = 0;
  std::uint64_t flags = 0;  ///< modifiers held when it is told, just after it happened
};

/// Listens passively to the events of the whole session, until destroyed: events are neither held
/// up nor changed. Presses are told when they go to the application in front; those that bring
/// another one to the front are not. Main thread only.
class EventTap {
 public:
  EventTap() = default;
  virtual ~EventTap() = default;
  EventTap(const EventTap&) = delete;
  EventTap& operator=(const EventTap&) = delete;

  /// Starts listening, or listens again after a notice that the tap was disabled.
  virtual void enable() = 0;
};

class EventTaps {
 public:
  EventTaps() = default;
  virtual ~EventTaps() = default;
  EventTaps(const EventTaps&) = delete;
  EventTaps& operator=(const EventTaps&) = delete;

  /// @param mask bit n set: events of type n are delivered. Notices always are.
  /// @param handler called on the main thread, from the loop, never from within create().
  /// @return a tap that is not yet enabled; nullptr when the session offers none.
  [[nodiscard]] virtual std::unique_ptr<EventTap> create(
      std::uint64_t mask, std::function<void(const TapEvent& event)> handler) = 0;
};

}  // namespace tolvane
