#pragma once

#include <string_view>
#include <vector>

#include "platform/desktop/accessibility/accessible.h"

namespace tolvane {

/// What is known of one file manager's window.
struct FileManagerFacts {
  enum class Folder {
    toolBar,             ///< the location entry, or breadcrumbs from the root on
    openWindows,         ///< org.freedesktop.FileManager1
    breadcrumbOfPlaces,  ///< breadcrumbs that start at a place; the manager confirms the folder
  };
  /// Where the manager writes how much is selected.
  enum class CountLabel { statusBar, besideProgress, overView };
  /// What a view shows of the files that are selected in it.
  enum class View { complete, partial };

  struct ViewPlace {
    AccessibleRole role;
    AccessibleRole within;  ///< what stands somewhere around it, and not around those at the side
  };

  std::string_view application;  ///< its name on the accessibility bus
  Folder folder = Folder::toolBar;
  /// Of the views that list the folder, not of those at the side.
  std::vector<ViewPlace> views;
  CountLabel countLabel = CountLabel::statusBar;
  View view = View::complete;
  /// What an element on the screen has: GTK 4 tells of hardly any that it is showing.
  unsigned shownState = AccessibleStates::showing;
  bool namesOneFileInStatusBar = false;  ///< asked when there is no view to read
};

/// @return nullptr for an application that is no file manager we know.
[[nodiscard]] const FileManagerFacts* fileManagerFacts(std::string_view application);

}  // namespace tolvane
