#include "platform/desktop/accessibility/file_manager_facts.h"

#include <algorithm>
#include <array>

namespace tolvane {

namespace {

using Facts = FileManagerFacts;
using Role = AccessibleRole;

/// As seen in Nautilus 43, Dolphin 22.12, PCManFM-Qt 1.2, Nemo 5.6, Thunar 4.18 and PCManFM 1.3.
const std::array<Facts, 6>& table() {
  static const std::array<Facts, 6> facts = {{
      {.application = "org.gnome.Nautilus",
       .folder = Facts::Folder::openWindows,
       .views = {{Role::table, Role::frame}, {Role::list, Role::treeTable}},
       .countLabel = Facts::CountLabel::overView,
       .view = Facts::View::partial,  // only cells near the visible ones exist
       .shownState = AccessibleStates::visible},
      {.application = "dolphin",
       .folder = Facts::Folder::breadcrumbOfPlaces,
       .views = {{Role::table, Role::layeredPane}},
       .countLabel = Facts::CountLabel::besideProgress},
      {.application = "pcmanfm-qt",
       .views = {{Role::list, Role::layeredPane},
                 {Role::tree, Role::layeredPane},
                 {Role::treeTable, Role::layeredPane}}},
      {.application = "nemo",
       .views = {{Role::layeredPane, Role::pageTab},
                 {Role::treeTable, Role::pageTab},
                 {Role::table, Role::pageTab}}},
      {.application = "thunar",  // its icons are not shown to others
       .views = {{Role::treeTable, Role::pageTab}, {Role::table, Role::pageTab}},
       .namesOneFileInStatusBar = true},
      {.application = "pcmanfm", .views = {}, .namesOneFileInStatusBar = true},
  }};
  return facts;
}

}  // namespace

const FileManagerFacts* fileManagerFacts(std::string_view application) {
  const auto found =
      std::find_if(table().begin(), table().end(), [application](const FileManagerFacts& facts) {
        return facts.application == application;
      });
  return found == table().end() ? nullptr : &*found;
}

}  // namespace tolvane
