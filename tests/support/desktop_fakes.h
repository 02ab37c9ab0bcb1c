#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "platform/desktop/content_view.h"
#include "platform/desktop/file_drop_view.h"
#include "platform/desktop/front_application.h"
#include "platform/desktop/palette_panel.h"
#include "platform/desktop/pointer.h"
#include "platform/desktop/screens.h"
#include "platform/desktop/settings_window.h"
#include "platform/desktop/user_permissions.h"
#include "platform/threads/main_queue.h"

/// A desktop without a display: every part does as it is told and tells what it was told. Tests set
/// the public members.
namespace tolvane::support {

using Calls = std::vector<std::string>;

class FakePanel final : public PalettePanel {
 public:
  explicit FakePanel(Calls& calls) : calls_(calls) {}
  void onDismiss(std::function<void()> dismiss) override { escape = std::move(dismiss); }
  [[nodiscard]] Rectangle frame() const override { return frame_; }
  void setFrame(const Rectangle& frame) override { frame_ = frame; }
  [[nodiscard]] bool isVisible() const override { return isVisible_; }
  void makeKeyAndOrderFront() override {
    isVisible_ = true;
    calls_.emplace_back("panel key");
  }
  void orderOut() override {
    isVisible_ = false;
    calls_.emplace_back("panel out");
  }
  void setMouseEvents(MouseEvents events) override { mouseEvents = events; }
  void setOpacity(double opacity) override { calls_.push_back(fmt::format("opacity {}", opacity)); }
  void fadeIn(std::chrono::milliseconds duration) override {
    calls_.push_back(fmt::format("fade in {}", duration.count()));
  }

  std::function<void()> escape;
  MouseEvents mouseEvents = MouseEvents::accepted;

 private:
  Calls& calls_;
  Rectangle frame_;
  bool isVisible_ = false;
};

class FakeSettingsWindow final : public SettingsWindow {
 public:
  explicit FakeSettingsWindow(Calls& calls) : calls_(calls) {}
  void onDismiss(std::function<void()> dismiss) override { escape = std::move(dismiss); }
  void setContentSize(Size content) override { size = content; }
  [[nodiscard]] bool isVisible() const override { return isVisible_; }
  void centreAndMakeKey() override {
    isVisible_ = true;
    calls_.emplace_back("settings key");
  }
  void orderOut() override { isVisible_ = false; }

  std::function<void()> escape;
  Size size;

 private:
  Calls& calls_;
  bool isVisible_ = false;
};

class FakeContent final : public ContentView {
 public:
  FakeContent(Calls& calls, const FakePanel& panel, const FakeSettingsWindow& settings)
      : calls_(calls), panel_(panel), settings_(settings) {}
  void moveTo(Window window) override {
    window_ = window;
    calls_.emplace_back(window == Window::palettePanel ? "content to panel"
                                                       : "content to settings");
  }
  [[nodiscard]] Size size() const override {
    const Rectangle frame = panel_.frame();
    return window_ == Window::settingsWindow ? settings_.size : Size{frame.width, frame.height};
  }
  void setBackdropShape(const Path& backdrop, FreeParts parts) override {
    shape = backdrop;
    freeParts = parts;
  }

  Path shape;
  FreeParts freeParts = FreeParts::takePointer;

 private:
  Calls& calls_;
  const FakePanel& panel_;
  const FakeSettingsWindow& settings_;
  Window window_ = Window::palettePanel;
};

class FakeDropView final : public FileDropView {
 public:
  void onFiles(Handler files) override { dropped = std::move(files); }

  Handler dropped;
};

class FakeScreens final : public Screens {
 public:
  [[nodiscard]] std::vector<Screen> all() const override { return screens; }
  [[nodiscard]] std::optional<Screen> main() const override { return focused; }

  std::vector<Screen> screens;
  std::optional<Screen> focused;
};

class FakePointer final : public Pointer {
 public:
  [[nodiscard]] Point location() const override { return at; }
  void startMonitoring(Handler pressed, Handler moved) override {
    press = std::move(pressed);
    move = std::move(moved);
  }
  void stopMonitoring() override { press = move = nullptr; }

  Point at;
  Handler press;
  Handler move;
};

class FakeFrontApplication final : public FrontApplication {
 public:
  explicit FakeFrontApplication(Calls& calls) : calls_(calls) {}
  [[nodiscard]] std::optional<RunningApplication> current() const override { return front; }
  [[nodiscard]] bool isRunning(const RunningApplication& application) const override {
    return application.bundleIdentifier != terminated;
  }
  void activate(const RunningApplication& application) override {
    calls_.push_back("activate " + application.bundleIdentifier);
  }

  std::optional<RunningApplication> front;
  std::string terminated;

 private:
  Calls& calls_;
};

class FakePermissions final : public UserPermissions {
 public:
  [[nodiscard]] bool isTrustedForAccessibility() const override { return isTrusted; }
  void requestAccessibility() override { isTrusted = true; }
  [[nodiscard]] bool canListenToInput() const override { return canListen; }
  bool requestInputListening() override {
    ++inputRequests;
    return canListen = grantsListening;
  }
  [[nodiscard]] bool reducesMotion() const override { return reduceMotion; }
  [[nodiscard]] bool reducesTransparency() const override { return reduceTransparency; }

  bool isTrusted = false;
  bool canListen = false;
  bool grantsListening = false;
  bool reduceMotion = false;
  bool reduceTransparency = false;
  int inputRequests = 0;
};

/// Runs posted tasks when it is told to.
class HeldQueue final : public MainQueue {
 public:
  void post(Task task) override { tasks_.push_back(std::move(task)); }
  void runAll() {
    while (!tasks_.empty()) {
      const Task task = std::move(tasks_.front());
      tasks_.pop_front();
      task();
    }
  }

 private:
  std::deque<Task> tasks_;
};

}  // namespace tolvane::support
