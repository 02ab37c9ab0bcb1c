#include "desktop/shortcut_service.h"

#include <cstdint>
#include <map>
#include <utility>

#include <fmt/format.h>

namespace tolvane {

namespace {

constexpr const char* storedKey = "shortcutKey";
constexpr const char* firstLetter = "C";  // while none is stored

/// The letters offered, with their virtual key codes.
const std::map<std::string, std::uint32_t>& keys() {
  static const std::map<std::string, std::uint32_t> codes = {{"C", HotKey::keyC},
                                                             {"X", HotKey::keyX},
                                                             {"V", HotKey::keyV},
                                                             {"F", HotKey::keyF},
                                                             {"K", HotKey::keyK}};
  return codes;
}

std::string spelled(const std::string& letter) {
  return "Control–Option–" + letter;
}

}  // namespace

ShortcutService::ShortcutService(HotKeys& hotKeys, UserDefaults& defaults)
    : hotKeys_(hotKeys), defaults_(defaults), key_(defaults.text(storedKey).value_or(firstLetter)) {
  hotKeys_.onPressed([this] {
    if (onTrigger_) {
      onTrigger_();
    }
  });
}

ShortcutService::~ShortcutService() {
  if (hotKey_) {
    hotKeys_.unregisterKey(*hotKey_);
  }
  hotKeys_.onPressed({});
}

bool ShortcutService::registerKey(const std::optional<std::string>& key) {
  const std::string letter = key.value_or(key_);
  const auto code = keys().find(letter);
  if (code == keys().end()) {
    return false;
  }
  if (letter == key_ && hotKey_) {
    return true;
  }
  const auto [status, reference] =
      hotKeys_.registerKey({code->second, HotKey::control + HotKey::option});
  if (status != 0) {
    status_ = fmt::format("{} unavailable ({}). Choose another shortcut; the menu bar still works.",
                          spelled(letter),
                          status);
    return false;
  }
  if (hotKey_) {
    hotKeys_.unregisterKey(*hotKey_);
  }
  hotKey_ = reference;
  key_ = letter;
  defaults_.setText(storedKey, letter);
  status_ = fmt::format("{} registered", spelled(letter));
  return true;
}

void ShortcutService::onTrigger(std::function<void()> trigger) {
  onTrigger_ = std::move(trigger);
}

}  // namespace tolvane
