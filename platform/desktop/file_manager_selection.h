#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/desktop/front_application.h"

namespace tolvane {

/// Asks the file manager in front what is selected in it. Main thread only, and the user waits: an
/// answer takes at most 0.18 seconds.
class FileManagerSelection {
 public:
  /// One selected item; nothing for an item that has no path (a device, a place on the network).
  using Item = std::optional<std::filesystem::path>;

  FileManagerSelection() = default;
  virtual ~FileManagerSelection() = default;
  FileManagerSelection(const FileManagerSelection&) = delete;
  FileManagerSelection& operator=(const FileManagerSelection&) = delete;

  /// In the file manager's order. Only paths that are certain and complete: when there is any doubt
  /// about one of them, or about their number, the list is empty.
  /// @param fileManager in front; its bundle identifier is fileManagerBundle.
  /// @throws PlatformError when the file manager cannot be asked or does not answer.
  [[nodiscard]] virtual std::vector<Item> items(const RunningApplication& fileManager) = 0;
};

}  // namespace tolvane
