#include "platform/desktop/qt/desktop_settings_programs.h"

#include <algorithm>
#include <array>
#include <vector>

#include "platform/files/platform_error.h"
#include "platform/process/launcher.h"

namespace tolvane {

namespace {

struct Program {
  const char* name;
  const char* accessibilityPage;  // its argument; nullptr when the program shows nothing else
};

// The desktop's own program first: several may be installed.
constexpr std::array<Program, 6> programs = {{{"gnome-control-center", "universal-access"},
                                              {"systemsettings", "kcm_access"},
                                              {"systemsettings5", "kcm_access"},
                                              {"cinnamon-settings", "accessibility"},
                                              {"xfce4-accessibility-settings", nullptr},
                                              {"mate-at-properties", nullptr}}};

const Program* installedProgram() {
  const auto* const found = std::find_if(programs.begin(), programs.end(), [](const auto& one) {
    return Launcher::isInstalled(one.name);
  });
  return found != programs.end() ? found : nullptr;
}

}  // namespace

std::string DesktopSettingsPrograms::privacyLink() const {
  return installedProgram() != nullptr ? "tolvane-settings://privacy" : "";
}

void DesktopSettingsPrograms::open(const std::string& link) {
  const Program* program = installedProgram();
  if (program == nullptr) {
    return;
  }
  std::vector<std::string> arguments;
  if (program->accessibilityPage != nullptr && link.ends_with("?Privacy_Accessibility")) {
    arguments.emplace_back(program->accessibilityPage);
  }
  try {
    Launcher::start(program->name, arguments);
  } catch (const PlatformError&) {
    return;  // nothing is reported of settings that do not open
  }
}

}  // namespace tolvane
