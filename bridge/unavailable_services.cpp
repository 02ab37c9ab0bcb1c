#include "bridge/unavailable_services.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "bridge/program_results.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

class NoPalette final : public Palette {
 public:
  void present(const PaletteStage&) override {}
  void show() override {}
  void hide() override {}
  void suspendDismissal() override {}
  void resumeDismissal() override {}
  void onSettingsDismissed(std::function<void()>) override {}
};

class NoPanels final : public Panels {
 public:
  void chooseFiles(std::function<void(std::optional<std::vector<Path>>)> closed) override {
    closed(std::nullopt);
  }
  void chooseFolder(std::function<void(std::optional<Path>)> closed) override {
    closed(std::nullopt);
  }
};

class NoShortcut final : public Shortcut {
 public:
  bool registerKey(const std::optional<std::string>& key) override {
    constexpr std::string_view letters = "CXVFK";
    const std::string letter = key.value_or(this->key());
    if (letter.size() == 1 && letters.find(letter) != std::string_view::npos) {
      status_ = fmt::format(
          "Control–Option–{} unavailable ({}). Choose another shortcut; the menu bar still works.",
          letter,
          ENOTSUP);
    }
    return false;
  }
  [[nodiscard]] std::string key() const override { return "C"; }
  [[nodiscard]] std::string status() const override { return status_; }

 private:
  std::string status_ = "Not registered";
};

class NoGesture final : public Gesture {
 public:
  bool setEnabled(bool on) override {
    status_ = on ? "Event monitoring unavailable. Use the shortcut or menu bar." : off;
    return !on;
  }
  [[nodiscard]] bool isEnabled() const override { return false; }
  [[nodiscard]] std::string status() const override { return status_; }

 private:
  static constexpr const char* off = "Off · keyboard shortcut recommended";
  std::string status_ = off;
};

class NoPermissions final : public Permissions {
 public:
  [[nodiscard]] PermissionState state() const override { return {}; }
  void open(const std::string&) override {}
  void requestAccessibility() override {}
};

class NoLoginItem final : public LoginItem {
 public:
  void setEnabled(bool) override {
    throw PlatformError("Only the desktop application can be launched at login.");
  }
  [[nodiscard]] int status() const override {
    constexpr int notFound = 3;
    return notFound;
  }
};

}  // namespace

DesktopServices unavailableServices() {
  DesktopServices services;
  services.palette = std::make_unique<NoPalette>();
  services.panels = std::make_unique<NoPanels>();
  services.shortcut = std::make_unique<NoShortcut>();
  services.gesture = std::make_unique<NoGesture>();
  services.permissions = std::make_unique<NoPermissions>();
  services.login = std::make_unique<NoLoginItem>();
  services.results = std::make_unique<ProgramResults>();
  return services;
}

}  // namespace tolvane
