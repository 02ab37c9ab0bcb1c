#include "platform/desktop/x11/window_class.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/desktop/front_application.h"
#include "platform/files/file_names.h"

namespace tolvane {

namespace {

/// Classes of windows of file managers and of the desktops that they draw, in lower case.
constexpr std::array<std::string_view, 11> fileManagers = {"org.gnome.nautilus",
                                                           "nautilus",
                                                           "dolphin",
                                                           "org.kde.dolphin",
                                                           "nemo",
                                                           "nemo-desktop",
                                                           "thunar",
                                                           "xfdesktop",
                                                           "pcmanfm",
                                                           "pcmanfm-qt",
                                                           "caja"};

/// @param classText WM_CLASS: the window's own name and its class, each ended by a NUL.
std::string bundleIn(std::string_view classText) {
  std::string name;
  while (!classText.empty()) {
    const auto end = std::min(classText.find('\0'), classText.size());
    name = FileNames::lower(classText.substr(0, end));
    if (std::find(fileManagers.begin(), fileManagers.end(), name) != fileManagers.end()) {
      return fileManagerBundle;
    }
    classText.remove_prefix(std::min(end + 1, classText.size()));
  }
  return name;
}

}  // namespace

std::string WindowClass::bundleOf(const XServer& server, XWindow window) {
  return bundleIn(server.text(window, "WM_CLASS"));
}

}  // namespace tolvane
