#include "bridge/settings_messages.h"

#include <exception>
#include <optional>
#include <string>

namespace tolvane {

namespace {

Value::Map permissionMap(const PermissionState& state) {
  return {
      {"accessibility", state.accessibility},
      {"inputMonitoring", state.inputMonitoring},
      {"automation",
       "Requested only when resolving a Finder selection; use Choose Files or drop without it."},
      {"reduceMotion", state.reduceMotion},
      {"reduceTransparency", state.reduceTransparency}};
}

const char* loginStatusText(LoginStatus status) {
  switch (status) {
    case LoginStatus::notRegistered:
      return "not registered";
    case LoginStatus::enabled:
      return "enabled";
    case LoginStatus::requiresApproval:
      return "requires approval in Login Items";
    case LoginStatus::notFound:
      return "app not installed / registration unavailable";
  }
  return "unknown";
}

bool enabledIn(const Value::Map& arguments) {
  return valueAt(arguments, "enabled").flag().value_or(false);
}

}  // namespace

void SettingsMessages::addMethods(MethodTable& table) {
  table.addFunction("settings", [this](const Value::Map&) { return settings(); });
  table.addFunction("setShortcut",
                    [this](const Value::Map& arguments) { return setShortcut(arguments); });
  table.addFunction("setGesture",
                    [this](const Value::Map& arguments) { return setGesture(arguments); });
  table.add("setLogin", [this](const Value::Map& arguments, const MethodReply& reply) {
    setLogin(arguments, reply);
  });
  table.addFunction("openPermission", [this](const Value::Map& arguments) {
    const std::string* section = valueAt(arguments, "section").text();
    services_.permissions->open(section != nullptr ? *section : "");
    return Value();
  });
  table.addFunction("requestFileAnchoring", [this](const Value::Map&) {
    services_.permissions->requestAccessibility();
    return settings();
  });
}

Value::Map SettingsMessages::settings() const {
  return {{"permissions", permissionMap(services_.permissions->state())},
          {"shortcutKey", services_.shortcut->key()},
          {"shortcutStatus", services_.shortcut->status()},
          {"gesture", services_.gesture->isEnabled()},
          {"gestureStatus", services_.gesture->status()},
          {"loginStatus", loginStatusText(services_.login->status())}};
}

Value SettingsMessages::setShortcut(const Value::Map& arguments) const {
  const std::string* key = valueAt(arguments, "key").text();
  const bool success =
      services_.shortcut->registerKey(key != nullptr ? std::optional(*key) : std::nullopt);
  return Value::Map{{"success", success}, {"settings", settings()}};
}

Value SettingsMessages::setGesture(const Value::Map& arguments) const {
  services_.gesture->setEnabled(enabledIn(arguments));
  events_.send("permissionStateChanged", settings());
  return settings();
}

void SettingsMessages::setLogin(const Value::Map& arguments, const MethodReply& reply) const {
  try {
    services_.login->setEnabled(enabledIn(arguments));
  } catch (const std::exception& failure) {
    constexpr const char* sentence =
        "Launch at login could not be changed. Use a signed app installed in Applications. ";
    reply.error("login", std::string(sentence) + failure.what());
    return;
  }
  reply.success(settings());
}

}  // namespace tolvane
