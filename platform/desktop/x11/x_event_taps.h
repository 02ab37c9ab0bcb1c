#pragma once

#include "platform/desktop/event_tap.h"
#include "platform/desktop/x11/raw_input.h"
#include "platform/desktop/x11/x_front_application.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// Taps of presses of the secondary button, the only events that are told; a tap for others
/// stays silent. The server disables none.
class XEventTaps final : public EventTaps {
 public:
  /// Nothing is owned; all outlive this object and its taps.
  XEventTaps(const XServer& server, RawInput& input, const XFrontApplication& front)
      : server_(server), input_(input), front_(front) {}

  [[nodiscard]] std::unique_ptr<EventTap> create(
      std::uint64_t mask, std::function<void(const TapEvent& event)> handler) override;

 private:
  const XServer& server_;
  RawInput& input_;
  const XFrontApplication& front_;
};

}  // namespace tolvane
