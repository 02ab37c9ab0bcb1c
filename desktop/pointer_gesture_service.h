#pragma once

#include <functional>
#include <memory>
#include <string>

#include "desktop/desktop_services.h"
#include "platform/desktop/event_tap.h"
#include "platform/desktop/front_application.h"
#include "platform/desktop/user_permissions.h"
#include "platform/desktop/wake_notices.h"
#include "platform/threads/main_queue.h"

namespace tolvane {

/// What the user is told about the gesture.
namespace GestureStatus {
inline constexpr const char* off = "Off · keyboard shortcut recommended";
inline constexpr const char* permissionMissing =
    "Input Monitoring is required for this optional gesture. Enable it in Settings, then retry.";
inline constexpr const char* unavailable =
    "Event monitoring unavailable. Use the shortcut or menu bar.";
inline constexpr const char* running =
    "Passive monitoring · clicked file cannot be verified; drop or choose to confirm. Finder’s "
    "menu may also appear.";
}  // namespace GestureStatus

/// The pointer gesture. It only listens: the file manager gets its click as well. Off at first;
/// set up anew after every wake of the computer. Main thread only.
class PointerGestureService final : public Gesture {
 public:
  /// Nothing is owned; all outlive the service.
  struct Surroundings {
    EventTaps& taps;
    UserPermissions& permissions;
    const FrontApplication& frontApplication;
    WakeNotices& wakeNotices;
    MainQueue& main;
  };

  explicit PointerGestureService(const Surroundings& surroundings);
  ~PointerGestureService() override;
  PointerGestureService(const PointerGestureService&) = delete;
  PointerGestureService& operator=(const PointerGestureService&) = delete;

  /// Asks for the permission to listen when it is missing.
  bool setEnabled(bool on) override;
  [[nodiscard]] bool isEnabled() const override { return enabled_; }
  [[nodiscard]] std::string status() const override { return status_; }
  /// @param trigger called from the main queue, never from within an event.
  void onTrigger(std::function<void()> trigger) override { *onTrigger_ = std::move(trigger); }

 private:
  void wake();
  bool start();
  void stayOff(const char* status);
  void received(const TapEvent& event);
  void scheduleTrigger();

  Surroundings desktop_;
  std::unique_ptr<EventTap> tap_;
  // Shared, so that a trigger that is still queued notices the end of the service.
  std::shared_ptr<std::function<void()>> onTrigger_ = std::make_shared<std::function<void()>>();
  bool enabled_ = false;
  std::string status_ = GestureStatus::off;
};

}  // namespace tolvane
