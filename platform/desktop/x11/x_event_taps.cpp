#include "platform/desktop/x11/x_event_taps.h"

#include <utility>

#include <xcb/xcb.h>

#include "platform/desktop/x11/x_reply.h"

namespace tolvane {

namespace {

/// Raw events carry no modifiers.
std::uint64_t flagsNow(const XServer& server) {
  const auto cookie = xcb_query_pointer(server.connection(), server.root());
  const XReply<xcb_query_pointer_reply_t> pointer(
      xcb_query_pointer_reply(server.connection(), cookie, nullptr));
  return pointer && (pointer->mask & XCB_MOD_MASK_SHIFT) != 0 ? TapEvent::shift : 0;
}

class XEventTap final : public EventTap {
 public:
  XEventTap(const XServer& server,
            RawInput& input,
            std::uint64_t mask,
            std::function<void(const TapEvent&)> handler)
      : server_(server), input_(input), mask_(mask), handler_(std::move(handler)) {}

  void enable() override {
    listener_ = input_.listen(RawInput::Kind::buttonPress,
                              [this](std::uint32_t button) { pressed(button); });
  }

 private:
  void pressed(std::uint32_t button) {
    constexpr std::uint32_t secondary = 3;
    constexpr std::uint64_t secondaryPresses = 1U << TapEvent::secondaryMouseDown;
    if (button == secondary && (mask_ & secondaryPresses) != 0) {
      handler_({TapEvent::secondaryMouseDown, flagsNow(server_)});
    }
  }

  const XServer& server_;
  RawInput& input_;
  std::uint64_t mask_;
  std::function<void(const TapEvent&)> handler_;
  std::unique_ptr<RawInput::Listener> listener_;
};

}  // namespace

std::unique_ptr<EventTap> XEventTaps::create(std::uint64_t mask,
                                             std::function<void(const TapEvent& event)> handler) {
  if (!input_.isAvailable()) {
    return nullptr;
  }
  return std::make_unique<XEventTap>(server_, input_, mask, std::move(handler));
}

}  // namespace tolvane
