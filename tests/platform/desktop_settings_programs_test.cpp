#include "platform/desktop/desktop_settings_programs.h"

#include <ostream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/script_folder.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/variable.h"

namespace tolvane {
namespace {

struct DesktopCase {
  const char* desktop;  // XDG_CURRENT_DESKTOP; nullptr when it is not set
  const char* installed;
  const char* started;  // with its arguments
};
void PrintTo(const DesktopCase& one, std::ostream* out) {
  *out << (one.desktop != nullptr ? one.desktop : "no desktop") << " with " << one.installed;
}

class SettingsProgramTest : public testing::TestWithParam<DesktopCase> {};

TEST_P(SettingsProgramTest, IsTheDesktopsOwn) {
  const support::ScriptFolder scripts;
  std::istringstream installed(GetParam().installed);
  for (std::string program; installed >> program;) {
    scripts.add(program,
                "echo ${0##*/} \"$@\" > \"$here/part\"; /bin/mv \"$here/part\" \"$here/started\"");
  }
  const support::Variable desktop("XDG_CURRENT_DESKTOP", GetParam().desktop);
  const support::Variable path("PATH", scripts.folder().path().c_str());  // nothing else
  DesktopSettingsPrograms settings;
  settings.open(settings.privacyLink() + "?Privacy_Accessibility");
  EXPECT_EQ(scripts.take("started"), GetParam().started + std::string("\n"));
}

constexpr const char* several = "gnome-control-center systemsettings cinnamon-settings";
constexpr const char* few = "gnome-control-center xfce4-accessibility-settings mate-at-properties";
INSTANTIATE_TEST_SUITE_P(
    Desktops,
    SettingsProgramTest,
    testing::Values(
        DesktopCase{"GNOME", several, "gnome-control-center universal-access"},
        DesktopCase{"ubuntu:GNOME", several, "gnome-control-center universal-access"},
        DesktopCase{"Unity:Unity7:ubuntu", several, "gnome-control-center universal-access"},
        DesktopCase{"KDE", several, "systemsettings kcm_access"},
        DesktopCase{"KDE", "gnome-control-center systemsettings5", "systemsettings5 kcm_access"},
        DesktopCase{"X-Cinnamon", several, "cinnamon-settings accessibility"},
        DesktopCase{"XFCE", few, "xfce4-accessibility-settings"},
        DesktopCase{"MATE", few, "mate-at-properties"},
        DesktopCase{"GNOME", "systemsettings", "systemsettings kcm_access"},
        DesktopCase{"LXQt", several, "systemsettings kcm_access"},
        DesktopCase{nullptr, several, "systemsettings kcm_access"}));

TEST(SettingsProgramsTest, OpenTheirFirstPageForWhatHasNone) {
  const support::ScriptFolder scripts;
  scripts.addRecorder("systemsettings", "started");
  const support::Variable desktop("XDG_CURRENT_DESKTOP", "KDE");
  DesktopSettingsPrograms settings;
  settings.open(settings.privacyLink() + "?Privacy_ListenEvent");
  EXPECT_EQ(scripts.take("started"), "\n") << "no argument";
}

TEST(SettingsProgramsTest, DoNothingWhereNoneIsInstalled) {
  const support::TemporaryFolder empty;
  const support::Variable path("PATH", empty.path().c_str());
  DesktopSettingsPrograms settings;
  EXPECT_NO_THROW(settings.open(settings.privacyLink() + "?Privacy_Accessibility"));
}

}  // namespace
}  // namespace tolvane
