#include "desktop/pointer_gesture_service.h"

#include <optional>
#include <utility>

#include "desktop/native_policies.h"
#include "platform/threads/while_alive.h"

namespace tolvane {

PointerGestureService::PointerGestureService(const Surroundings& surroundings)
    : desktop_(surroundings) {
  desktop_.wakeNotices.onWake([this] { wake(); });
}

PointerGestureService::~PointerGestureService() {
  desktop_.wakeNotices.onWake({});
}

bool PointerGestureService::setEnabled(bool on) {
  tap_.reset();
  if (!on) {
    stayOff(GestureStatus::off);
    return true;
  }
  if (!desktop_.permissions.canListenToInput() && !desktop_.permissions.requestInputListening()) {
    stayOff(GestureStatus::permissionMissing);
    return false;
  }
  return start();
}

bool PointerGestureService::start() {
  tap_ = desktop_.taps.create(TapEvent::secondaryPresses,
                              [this](const TapEvent& event) { received(event); });
  if (tap_ == nullptr) {
    stayOff(GestureStatus::unavailable);
    return false;
  }
  tap_->enable();
  enabled_ = true;
  status_ = GestureStatus::running;
  return true;
}

void PointerGestureService::stayOff(const char* status) {
  enabled_ = false;
  status_ = status;
}

void PointerGestureService::wake() {
  if (enabled_) {
    setEnabled(true);
  }
}

void PointerGestureService::received(const TapEvent& event) {
  if (event.type == TapEvent::disabledByTimeout || event.type == TapEvent::disabledByUserInput) {
    tap_->enable();
    return;
  }
  const auto front = desktop_.frontApplication.current();
  if (NativePolicies::shouldOfferPointerPalette(
          front ? std::optional(front->bundleIdentifier) : std::nullopt,
          (event.flags & TapEvent::shift) != 0,
          event.type == TapEvent::secondaryMouseDown)) {
    scheduleTrigger();
  }
}

void PointerGestureService::scheduleTrigger() {
  desktop_.main.post(whileAlive(onTrigger_, [this] {
    if (*onTrigger_) {
      (*onTrigger_)();
    }
  }));
}

}  // namespace tolvane
