#pragma once

#include <cmath>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "desktop/desktop_services.h"
#include "engine/primitives/conversion_failure.h"

namespace tolvane::support {

/// What the bridge asked of its desktop, in order, and what the desktop is to answer.
struct DesktopRecord {
  std::vector<std::string> calls;
  std::function<void()> settingsDismissed;
  std::function<void(std::vector<std::filesystem::path>)> filesDropped;
  std::function<void()> shortcutPressed;
  std::function<void()> gestureMade;
  std::vector<std::filesystem::path> finderFiles;
  std::optional<Rectangle> finderFrame;
  std::string finderFailure;  // empty: none
  std::function<void(std::optional<std::vector<std::filesystem::path>>)> filesClosed;
  std::function<void(std::optional<std::filesystem::path>)> folderClosed;
  bool isGestureAllowed = false;
  std::string loginFailure;  // empty: none
  LoginStatus loginStatus = LoginStatus::notRegistered;
};

class RecordingPalette final : public Palette {
 public:
  explicit RecordingPalette(DesktopRecord& record) : record_(record) {}
  void beginInvocation(const std::optional<Rectangle>& fileFrame) override {
    record_.calls.push_back(fileFrame ? "begin at " + std::to_string(std::lround(fileFrame->x))
                                      : "begin");
  }
  void present(const PaletteStage& stage) override {
    record_.calls.push_back("present " + stage.name + (stage.hasFiles ? " files " : " none ") +
                            std::to_string(stage.actionCount));
  }
  void show() override { record_.calls.emplace_back("show"); }
  void hide() override { record_.calls.emplace_back("hide"); }
  void suspendDismissal() override { record_.calls.emplace_back("suspend"); }
  void resumeDismissal() override { record_.calls.emplace_back("resume"); }
  void onSettingsDismissed(std::function<void()> dismissed) override {
    record_.settingsDismissed = std::move(dismissed);
  }
  void onFiles(std::function<void(Files)> dropped) override {
    record_.filesDropped = std::move(dropped);
  }

 private:
  DesktopRecord& record_;
};

class RecordingPanels final : public Panels {
 public:
  explicit RecordingPanels(DesktopRecord& record) : record_(record) {}
  void chooseFiles(std::function<void(std::optional<std::vector<Path>>)> closed) override {
    record_.calls.emplace_back("files panel");
    record_.filesClosed = std::move(closed);
  }
  void chooseFolder(std::function<void(std::optional<Path>)> closed) override {
    record_.calls.emplace_back("folder panel");
    record_.folderClosed = std::move(closed);
  }

 private:
  DesktopRecord& record_;
};

class RecordingShortcut final : public Shortcut {
 public:
  explicit RecordingShortcut(DesktopRecord& record) : record_(record) {}
  bool registerKey(const std::optional<std::string>& key) override {
    record_.calls.push_back("register " + key.value_or("the current key"));
    key_ = key.value_or(key_);
    return key_ != "Q";
  }
  [[nodiscard]] std::string key() const override { return key_; }
  [[nodiscard]] std::string status() const override { return "status of " + key_; }
  void onTrigger(std::function<void()> trigger) override {
    record_.shortcutPressed = std::move(trigger);
  }

 private:
  DesktopRecord& record_;
  std::string key_ = "C";
};

class RecordingGesture final : public Gesture {
 public:
  explicit RecordingGesture(DesktopRecord& record) : record_(record) {}
  bool setEnabled(bool on) override {
    record_.calls.emplace_back(on ? "gesture on" : "gesture off");
    isEnabled_ = on && record_.isGestureAllowed;
    return isEnabled_ == on;
  }
  [[nodiscard]] bool isEnabled() const override { return isEnabled_; }
  [[nodiscard]] std::string status() const override { return isEnabled_ ? "running" : "refused"; }
  void onTrigger(std::function<void()> trigger) override {
    record_.gestureMade = std::move(trigger);
  }

 private:
  DesktopRecord& record_;
  bool isEnabled_ = false;
};

class RecordingFinder final : public FinderSelection {
 public:
  explicit RecordingFinder(DesktopRecord& record) : record_(record) {}
  std::vector<Path> resolve() override {
    record_.calls.emplace_back("resolve");
    if (!record_.finderFailure.empty()) {
      throw ConversionFailure::message(record_.finderFailure);
    }
    return record_.finderFiles;
  }
  [[nodiscard]] std::optional<Rectangle> selectedFileFrame() const override {
    return record_.finderFrame;
  }

 private:
  DesktopRecord& record_;
};

class RecordingPermissions final : public Permissions {
 public:
  explicit RecordingPermissions(DesktopRecord& record) : record_(record) {}
  [[nodiscard]] PermissionState state() const override { return {.reduceMotion = true}; }
  void open(const std::string& section) override {
    record_.calls.push_back("permission [" + section + "]");
  }
  void requestAccessibility() override { record_.calls.emplace_back("ask accessibility"); }

 private:
  DesktopRecord& record_;
};

class RecordingLoginItem final : public LoginItem {
 public:
  explicit RecordingLoginItem(DesktopRecord& record) : record_(record) {}
  void setEnabled(bool on) override {
    record_.calls.emplace_back(on ? "login on" : "login off");
    if (!record_.loginFailure.empty()) {
      throw std::runtime_error(record_.loginFailure);
    }
  }
  [[nodiscard]] LoginStatus status() const override { return record_.loginStatus; }

 private:
  DesktopRecord& record_;
};

class RecordingResults final : public ResultActions {
 public:
  explicit RecordingResults(DesktopRecord& record) : record_(record) {}
  void reveal(const std::vector<Path>& files) override {
    std::string call = "reveal";
    for (const Path& file : files) {
      call += " " + file.string();
    }
    record_.calls.push_back(std::move(call));
  }
  void open(const Path& file) override { record_.calls.push_back("open " + file.string()); }
  void copyText(const std::string& text) override {
    record_.calls.push_back("copy [" + text + "]");
  }

 private:
  DesktopRecord& record_;
};

/// @param record outlives the services.
inline DesktopServices recordingServices(DesktopRecord& record) {
  return {std::make_unique<RecordingPalette>(record),
          std::make_unique<RecordingPanels>(record),
          std::make_unique<RecordingShortcut>(record),
          std::make_unique<RecordingGesture>(record),
          std::make_unique<RecordingFinder>(record),
          std::make_unique<RecordingPermissions>(record),
          std::make_unique<RecordingLoginItem>(record),
          std::make_unique<RecordingResults>(record)};
}

}  // namespace tolvane::support
