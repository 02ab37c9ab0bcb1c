#include "platform/desktop/desktop_settings_programs.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "platform/files/platform_error.h"
#include "platform/process/launcher.h"

namespace tolvane {

namespace {

enum class Works { everywhere, onItsDesktop };

struct Program {
  std::string_view desktop;  // as XDG_CURRENT_DESKTOP names it
  const char* name;
  const char* accessibilityPage;  // its argument; nullptr when the program shows nothing else
  Works works;
};

constexpr std::array<Program, 7> programs = {
    {{"GNOME", "gnome-control-center", "universal-access", Works::onItsDesktop},
     {"Unity", "gnome-control-center", "universal-access", Works::onItsDesktop},
     {"KDE", "systemsettings", "kcm_access", Works::everywhere},
     {"KDE", "systemsettings5", "kcm_access", Works::everywhere},
     {"X-Cinnamon", "cinnamon-settings", "accessibility", Works::everywhere},
     {"XFCE", "xfce4-accessibility-settings", nullptr, Works::everywhere},
     {"MATE", "mate-at-properties", nullptr, Works::everywhere}}};

/// @param desktops separated by colons.
bool names(std::string_view desktops, std::string_view desktop) {
  while (!desktops.empty()) {
    const std::string_view one = desktops.substr(0, desktops.find(':'));
    if (one == desktop) {
      return true;
    }
    desktops.remove_prefix(std::min(one.size() + 1, desktops.size()));
  }
  return false;
}

/// @return the first installed program that is wanted; nullptr when there is none.
template <typename Condition>
const Program* installedProgram(const Condition& isWanted) {
  const auto* const found = std::find_if(programs.begin(), programs.end(), [&](const auto& one) {
    return isWanted(one) && Launcher::isInstalled(one.name);
  });
  return found != programs.end() ? found : nullptr;
}

/// The program of the desktop that runs, else one that works there as well.
const Program* settingsProgram() {
  const char* const value = std::getenv("XDG_CURRENT_DESKTOP");  // NOLINT(concurrency-mt-unsafe)
  const std::string_view desktops = value != nullptr ? value : "";
  const Program* const own = installedProgram(
      [desktops](const Program& program) { return names(desktops, program.desktop); });
  return own != nullptr ? own : installedProgram([](const Program& program) {
    return program.works == Works::everywhere;
  });
}

}  // namespace

void DesktopSettingsPrograms::open(const std::string& link) {
  const Program* const program = settingsProgram();
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
