#include "platform/desktop/x11/x_hot_keys.h"

#include <array>
#include <utility>

#include <xcb/xcb.h>

#include "platform/desktop/x11/x_reply.h"

namespace tolvane {

namespace {

/// Caps lock and num lock count as modifiers: a grab is wanted with each of them on and off.
constexpr std::array<std::uint16_t, 4> lockStates = {
    0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

/// The key code of the key in that place: evdev's number of it, and 8. It is not looked up by the
/// letter, which another layout may not have at all.
std::uint8_t keyCodeOf(std::uint32_t virtualKeyCode) {
  static const std::map<std::uint32_t, std::uint8_t> codes = {{HotKey::keyC, 54},
                                                              {HotKey::keyX, 53},
                                                              {HotKey::keyV, 55},
                                                              {HotKey::keyF, 41},
                                                              {HotKey::keyK, 45}};
  const auto found = codes.find(virtualKeyCode);
  return found != codes.end() ? found->second : std::uint8_t{0};
}

std::uint16_t modifiersOf(std::uint32_t modifiers) {
  unsigned mask = 0;
  if ((modifiers & HotKey::control) != 0) {
    mask |= XCB_MOD_MASK_CONTROL;
  }
  if ((modifiers & HotKey::option) != 0) {
    mask |= XCB_MOD_MASK_1;
  }
  return static_cast<std::uint16_t>(mask);
}

}  // namespace

XHotKeys::XHotKeys(XServer& server)
    : server_(server), filter_([this](const XEvent& event) { seen(event); }) {}

XHotKeys::~XHotKeys() {
  for (const auto& [reference, taken] : grabs_) {
    ungrab(taken);
  }
}

HotKeys::Registration XHotKeys::registerKey(const HotKey& key) {
  const Grab wanted = {keyCodeOf(key.virtualKeyCode), modifiersOf(key.modifiers)};
  if (wanted.keyCode == 0) {
    return {.status = unknownKey};  // 0 would be every key
  }
  if (!server_.isBelowWayland()) {
    return take(wanted);
  }
  if (belowWayland_ == 0) {
    belowWayland_ = take(wanted).reference;
  }
  return {.status = keptByWayland};
}

HotKeys::Registration XHotKeys::take(const Grab& wanted) {
  if (const int status = grab(wanted); status != 0) {
    ungrab(wanted);  // those of the four that were not refused
    return {.status = status};
  }
  grabs_[++lastReference_] = wanted;
  return {.reference = lastReference_};
}

int XHotKeys::grab(const Grab& wanted) {
  int status = 0;
  for (const std::uint16_t locks : lockStates) {
    const auto cookie = xcb_grab_key_checked(server_.connection(),
                                             1,
                                             server_.root(),
                                             static_cast<std::uint16_t>(wanted.modifiers | locks),
                                             wanted.keyCode,
                                             XCB_GRAB_MODE_ASYNC,
                                             XCB_GRAB_MODE_ASYNC);
    const XReply<xcb_generic_error_t> error(xcb_request_check(server_.connection(), cookie));
    if (error && status == 0) {
      status = error->error_code;
    }
  }
  return status;
}

void XHotKeys::ungrab(const Grab& taken) {
  for (const std::uint16_t locks : lockStates) {
    xcb_ungrab_key(server_.connection(),
                   taken.keyCode,
                   server_.root(),
                   static_cast<std::uint16_t>(taken.modifiers | locks));
  }
  xcb_flush(server_.connection());
}

void XHotKeys::unregisterKey(Reference reference) {
  const auto found = grabs_.find(reference);
  if (found != grabs_.end()) {
    ungrab(found->second);
    grabs_.erase(found);
  }
}

void XHotKeys::seen(const XEvent& event) {
  if (event.type != XCB_KEY_PRESS && event.type != XCB_KEY_RELEASE) {
    return;
  }
  const auto key = event.as<xcb_key_press_event_t>();  // a release has the same members
  if (key.event != server_.root()) {
    return;
  }
  if (event.type == XCB_KEY_RELEASE) {
    repetition_.released(key.time);
    return;
  }
  if (!repetition_.isSeenAt(key.time) && pressed_) {
    for (const auto& [reference, taken] : grabs_) {
      if (taken.keyCode == key.detail) {
        pressed_();
        return;
      }
    }
  }
}

}  // namespace tolvane
