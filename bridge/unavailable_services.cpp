#include "bridge/unavailable_services.h"

#include <cerrno>

#include "bridge/program_results.h"
#include "desktop/pointer_gesture_service.h"
#include "desktop/shortcut_service.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

class NoPalette final : public Palette {
 public:
  void beginInvocation(const std::optional<Rectangle>&) override {}
  void present(const PaletteStage&) override {}
  void show() override {}
  void hide() override {}
  void suspendDismissal() override {}
  void resumeDismissal() override {}
  void onSettingsDismissed(std::function<void()>) override {}
  void onFiles(std::function<void(Files)>) override {}
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

class NoHotKeys final : public HotKeys {
 public:
  Registration registerKey(const HotKey&) override { return {.status = ENOTSUP}; }
  void unregisterKey(Reference) override {}
  void onPressed(std::function<void()>) override {}
};

class NoUserDefaults final : public UserDefaults {
 public:
  [[nodiscard]] std::optional<std::string> text(const std::string&) const override { return {}; }
  void setText(const std::string&, const std::string&) override {}
};

struct Keyless {
  NoHotKeys hotKeys;
  NoUserDefaults defaults;
};

class NoShortcut final : private Keyless, public ShortcutService {
 public:
  NoShortcut() : ShortcutService(hotKeys, defaults) {}
};

class NoGesture final : public Gesture {
 public:
  bool setEnabled(bool on) override {
    status_ = on ? GestureStatus::unavailable : GestureStatus::off;
    return !on;
  }
  [[nodiscard]] bool isEnabled() const override { return false; }
  [[nodiscard]] std::string status() const override { return status_; }
  void onTrigger(std::function<void()>) override {}

 private:
  std::string status_ = GestureStatus::off;
};

class NoFinderSelection final : public FinderSelection {
 public:
  std::vector<Path> resolve() override { return {}; }
  [[nodiscard]] std::optional<Rectangle> selectedFileFrame() const override { return {}; }
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
  [[nodiscard]] LoginStatus status() const override { return LoginStatus::notFound; }
};

}  // namespace

DesktopServices unavailableServices() {
  DesktopServices services;
  services.palette = std::make_unique<NoPalette>();
  services.panels = std::make_unique<NoPanels>();
  services.shortcut = std::make_unique<NoShortcut>();
  services.gesture = std::make_unique<NoGesture>();
  services.finder = std::make_unique<NoFinderSelection>();
  services.permissions = std::make_unique<NoPermissions>();
  services.login = std::make_unique<NoLoginItem>();
  services.results = std::make_unique<ProgramResults>();
  return services;
}

}  // namespace tolvane
