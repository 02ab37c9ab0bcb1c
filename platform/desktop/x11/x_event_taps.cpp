#include "platform/desktop/x11/x_event_taps.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <xcb/xcb.h>

#include "platform/desktop/x11/window_class.h"
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

/// Whether the pointer is on a window of the application: on its active one, or on another one of
/// the same class, such as the desktop of the file manager. A raw press is told before the window
/// manager makes what was pressed the active window, so that alone would not do.
bool isPointerOn(const RunningApplication& application, const XServer& server) {
  const std::string& bundle = application.bundleIdentifier;
  const std::vector<XWindow> windows = server.windowsUnderPointer();
  return std::any_of(windows.begin(), windows.end(), [&](XWindow window) {
    return window == application.window ||
           (!bundle.empty() && WindowClass::bundleOf(server, window) == bundle);
  });
}

class XEventTap final : public EventTap {
 public:
  XEventTap(const XServer& server,
            RawInput& input,
            const XFrontApplication& front,
            std::uint64_t mask,
            std::function<void(const TapEvent&)> handler)
      : server_(server), input_(input), front_(front), mask_(mask), handler_(std::move(handler)) {}

  void enable() override {
    listener_ = input_.listen([this](std::uint32_t button) { pressed(button); });
  }

 private:
  void pressed(std::uint32_t button) {
    constexpr std::uint32_t secondary = 3;
    if (button != secondary || (mask_ & TapEvent::secondaryPresses) == 0) {
      return;
    }
    const auto application = front_.current();
    if (application && isPointerOn(*application, server_)) {
      handler_({TapEvent::secondaryMouseDown, flagsNow(server_)});
    }
  }

  const XServer& server_;
  RawInput& input_;
  const XFrontApplication& front_;
  std::uint64_t mask_;
  std::function<void(const TapEvent&)> handler_;
  std::unique_ptr<RawInput::Listener> listener_;
};

}  // namespace

std::unique_ptr<EventTap> XEventTaps::create(std::uint64_t mask,
                                             std::function<void(const TapEvent& event)> handler) {
  // Below Wayland, presses in other applications are not told.
  if (!input_.isAvailable() || server_.isBelowWayland()) {
    return nullptr;
  }
  return std::make_unique<XEventTap>(server_, input_, front_, mask, std::move(handler));
}

}  // namespace tolvane
