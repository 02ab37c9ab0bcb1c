#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "desktop/desktop_services.h"
#include "platform/desktop/accessibility_tree.h"
#include "platform/desktop/file_manager_selection.h"
#include "platform/desktop/front_application.h"
#include "platform/desktop/screens.h"
#include "platform/desktop/user_permissions.h"

namespace tolvane {

/// Which files are selected in the file manager in front and, of a single one, where it is seen.
/// Never names a file that is not certainly selected: on any doubt the selection is empty. Main
/// thread only; the search for the frame ends after 0.18 seconds or 250 elements.
class FinderSelectionService final : public FinderSelection {
 public:
  /// Nothing is owned; all outlive the service.
  struct Surroundings {
    const FrontApplication& frontApplication;
    FileManagerSelection& selection;
    AccessibilityTree& tree;
    const UserPermissions& permissions;
    const Screens& screens;
  };
  /// Never runs backwards.
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  explicit FinderSelectionService(const Surroundings& surroundings,
                                  Clock clock = std::chrono::steady_clock::now);

  std::vector<Path> resolve() override;
  [[nodiscard]] std::optional<Rectangle> selectedFileFrame() const override {
    return selectedFileFrame_;
  }

 private:
  [[nodiscard]] std::vector<Path> selectedFiles(const RunningApplication& fileManager) const;
  [[nodiscard]] std::optional<Rectangle> selectedFrame(std::int64_t processIdentifier,
                                                       const Path& file) const;
  [[nodiscard]] std::optional<Rectangle> frame(const AccessibleElement& element) const;
  [[nodiscard]] bool isOnScreen(const Rectangle& frame) const;

  Surroundings desktop_;
  Clock clock_;
  std::optional<Rectangle> selectedFileFrame_;
};

}  // namespace tolvane
