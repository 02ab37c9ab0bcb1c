#pragma once

#include "bridge/event_stream.h"
#include "bridge/method_table.h"
#include "desktop/desktop_services.h"

namespace tolvane {

/// Reads and changes the preferences, each of which lives with its service. Main thread only.
class SettingsMessages {
 public:
  /// Neither is owned; both outlive this object.
  SettingsMessages(const DesktopServices& services, const EventStream& events)
      : services_(services), events_(events) {}

  /// "settings", "setShortcut", "setGesture", "setLogin", "openPermission" and
  /// "requestFileAnchoring".
  void addMethods(MethodTable& table);

  /// The settings map, made afresh from the services.
  [[nodiscard]] Value::Map settings() const;

 private:
  Value setShortcut(const Value::Map& arguments) const;
  Value setGesture(const Value::Map& arguments) const;
  void setLogin(const Value::Map& arguments, const MethodReply& reply) const;

  const DesktopServices& services_;
  const EventStream& events_;
};

}  // namespace tolvane
