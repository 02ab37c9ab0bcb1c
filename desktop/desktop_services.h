#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/geometry.h"
#include "platform/desktop/login_status.h"

/// What the bridge asks of the desktop that it runs on. Everything is called, and calls back, on
/// the main thread.
namespace tolvane {

/// The interface's current screen, by which the palette takes its size and shape.
struct PaletteStage {
  std::string name;  ///< "home", "editor", "finished" or "settings"
  bool hasFiles = false;
  std::int64_t actionCount = 0;
};

class Palette {
 public:
  using Files = std::vector<std::filesystem::path>;

  Palette() = default;
  virtual ~Palette() = default;
  Palette(const Palette&) = delete;
  Palette& operator=(const Palette&) = delete;

  /// Remembers what the palette is to appear next to, and who has the focus now.
  /// @param fileFrame of the selected file; absent means the pointer.
  virtual void beginInvocation(const std::optional<Rectangle>& fileFrame) = 0;
  virtual void present(const PaletteStage& stage) = 0;
  virtual void show() = 0;
  /// Hides the palette and the settings window and gives the focus back.
  virtual void hide() = 0;
  /// Between the two, no click elsewhere dismisses the palette.
  virtual void suspendDismissal() = 0;
  virtual void resumeDismissal() = 0;
  /// @param dismissed called whenever the settings window was dismissed.
  virtual void onSettingsDismissed(std::function<void()> dismissed) = 0;
  /// @param dropped takes the files that were dropped on the palette, at least one.
  virtual void onFiles(std::function<void(Files)> dropped) = 0;
};

/// Open panels. Each calls back once, when it has closed; nullopt when it was cancelled.
class Panels {
 public:
  using Path = std::filesystem::path;

  Panels() = default;
  virtual ~Panels() = default;
  Panels(const Panels&) = delete;
  Panels& operator=(const Panels&) = delete;

  /// Several files of any type, no folders.
  virtual void chooseFiles(std::function<void(std::optional<std::vector<Path>>)> closed) = 0;
  /// One folder, which may be created in the panel.
  virtual void chooseFolder(std::function<void(std::optional<Path>)> closed) = 0;
};

/// The global shortcut: Control–Option and one letter.
class Shortcut {
 public:
  Shortcut() = default;
  virtual ~Shortcut() = default;
  Shortcut(const Shortcut&) = delete;
  Shortcut& operator=(const Shortcut&) = delete;

  /// @param key absent means the current one.
  /// @return whether a shortcut is now active for that letter; if not, status() may say why.
  virtual bool registerKey(const std::optional<std::string>& key) = 0;
  [[nodiscard]] virtual std::string key() const = 0;
  [[nodiscard]] virtual std::string status() const = 0;
  /// @param trigger called whenever the shortcut is pressed.
  virtual void onTrigger(std::function<void()> trigger) = 0;
};

/// The pointer gesture: Shift and a secondary click in the file manager.
class Gesture {
 public:
  Gesture() = default;
  virtual ~Gesture() = default;
  Gesture(const Gesture&) = delete;
  Gesture& operator=(const Gesture&) = delete;

  /// @return whether the wanted state was reached; if not, status() says why.
  virtual bool setEnabled(bool on) = 0;
  [[nodiscard]] virtual bool isEnabled() const = 0;
  [[nodiscard]] virtual std::string status() const = 0;
  /// @param trigger called whenever the gesture was recognised.
  virtual void onTrigger(std::function<void()> trigger) = 0;
};

/// What is selected in the file manager.
class FinderSelection {
 public:
  using Path = std::filesystem::path;

  FinderSelection() = default;
  virtual ~FinderSelection() = default;
  FinderSelection(const FinderSelection&) = delete;
  FinderSelection& operator=(const FinderSelection&) = delete;

  /// Empty when no file manager is in front. The user waits for the answer.
  /// @throws ConversionFailure when the file manager cannot be asked.
  virtual std::vector<Path> resolve() = 0;
  /// Where the one file of the last resolve() is seen on the screen, if that is known.
  [[nodiscard]] virtual std::optional<Rectangle> selectedFileFrame() const = 0;
};

/// What the user allows and prefers. "automation" is always the same text.
struct PermissionState {
  bool accessibility = false;
  bool inputMonitoring = false;
  bool reduceMotion = false;
  bool reduceTransparency = false;
};

class Permissions {
 public:
  Permissions() = default;
  virtual ~Permissions() = default;
  Permissions(const Permissions&) = delete;
  Permissions& operator=(const Permissions&) = delete;

  /// Never shows a prompt.
  [[nodiscard]] virtual PermissionState state() const = 0;
  /// Opens the system's settings at "Accessibility", "InputMonitoring" or "Automation"; another
  /// section does nothing.
  virtual void open(const std::string& section) = 0;
  /// Asks the system for accessibility, with its prompt, and does not wait for the answer.
  virtual void requestAccessibility() = 0;
};

class LoginItem {
 public:
  LoginItem() = default;
  virtual ~LoginItem() = default;
  LoginItem(const LoginItem&) = delete;
  LoginItem& operator=(const LoginItem&) = delete;

  /// @throws std::exception with a description when the system refuses.
  virtual void setEnabled(bool on) = 0;
  [[nodiscard]] virtual LoginStatus status() const = 0;
};

/// What can be done with the results of a job. Does what it can; reports and throws nothing.
class ResultActions {
 public:
  using Path = std::filesystem::path;

  ResultActions() = default;
  virtual ~ResultActions() = default;
  ResultActions(const ResultActions&) = delete;
  ResultActions& operator=(const ResultActions&) = delete;

  /// Shows the files, selected, in the file manager.
  virtual void reveal(const std::vector<Path>& files) = 0;
  /// Opens the file with its default application.
  virtual void open(const Path& file) = 0;
  /// Replaces what is on the clipboard.
  virtual void copyText(const std::string& text) = 0;
};

struct DesktopServices {
  std::unique_ptr<Palette> palette;
  std::unique_ptr<Panels> panels;
  std::unique_ptr<Shortcut> shortcut;
  std::unique_ptr<Gesture> gesture;
  std::unique_ptr<FinderSelection> finder;
  std::unique_ptr<Permissions> permissions;
  std::unique_ptr<LoginItem> login;
  std::unique_ptr<ResultActions> results;
};

}  // namespace tolvane
