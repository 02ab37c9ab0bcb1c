#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "platform/desktop/accessibility/accessibility.h"
#include "platform/desktop/accessibility/accessible_questions.h"
#include "platform/desktop/accessibility/file_manager_facts.h"
#include "platform/desktop/accessibility/shown_file.h"
#include "platform/desktop/accessibility/window_tree.h"
#include "platform/desktop/file_manager_selection.h"

namespace tolvane {

/// Reads the active window of the file manager, which takes 20 to 80 ms, and gives up after 180 ms.
/// Main thread only.
class AtspiFileManagerSelection final : public FileManagerSelection {
 public:
  /// Of the 180 ms that the user may wait; the rest is for the disk and for waking up late.
  static constexpr std::chrono::milliseconds defaultSearchTime{170};

  /// @param home of the user.
  /// @param shown set to the element of a single selected file, else to nothing.
  AtspiFileManagerSelection(std::shared_ptr<AccessibleQuestions> questions,
                            WindowPlaces places,
                            std::filesystem::path home,
                            std::shared_ptr<std::optional<ShownFile>> shown,
                            std::chrono::milliseconds searchTime = defaultSearchTime);

  /// @throws PlatformError when the session has no accessibility bus, the file manager is not on
  /// it, or does not answer in time.
  [[nodiscard]] std::vector<Item> items(const RunningApplication& fileManager) override;

 private:
  using Deadline = AccessibleQuestions::Deadline;
  using Paths = std::vector<std::filesystem::path>;

  [[nodiscard]] Paths folders(const WindowNode& window,
                              const FileManagerFacts& facts,
                              const RunningApplication& fileManager,
                              Deadline deadline) const;
  [[nodiscard]] Paths openFolders(const WindowNode& window,
                                  const RunningApplication& fileManager,
                                  Deadline deadline) const;
  [[nodiscard]] Paths confirmedFolders(const Paths& candidates,
                                       std::int64_t processIdentifier,
                                       Deadline deadline) const;

  std::shared_ptr<AccessibleQuestions> questions_;
  WindowPlaces places_;
  std::filesystem::path home_;
  std::shared_ptr<std::optional<ShownFile>> shown_;
  std::chrono::milliseconds searchTime_;
};

}  // namespace tolvane
