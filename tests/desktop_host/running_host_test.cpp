#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop_host/session.h"
#include "tests/support/eventually.h"
#include "tests/support/script_folder.h"
#include "tests/support/stop_watch.h"
#include "tests/support/stubborn_job.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::eventually;
using support::eventuallyActive;
using support::Host;
using support::isOnBus;
using support::isPaletteVisible;
using support::output;
using support::paletteSize;
using support::Program;
using support::xdotool;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* wheel = "460x460";

std::string onBus(const std::string& words) {
  return output("gdbus call --session " + words);
}

std::string openOnBus(const std::string& addresses) {
  return onBus(std::string("-d ") + support::hostName +
               " -o /app/tolvane/Desktop -m org.freedesktop.Application.Open '" + addresses +
               "' '{}'");
}

/// Presses what has that name in the host's windows, as a screen reader would.
void press(const std::string& name) {
  EXPECT_EQ(output(std::string("/usr/bin/python3 ") + ACCESSIBLE + " press '" + name + "'"), "");
}

std::string namesOnScreen() {
  return output(std::string("/usr/bin/python3 ") + ACCESSIBLE + " names");
}

/// A host whose interface can be read and pressed.
class RunningHostTest : public support::SessionTest {
 protected:
  RunningHostTest() { ::setenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1", 1); }

  void SetUp() override {
    SessionTest::SetUp();
    host_.emplace();
  }

  void openPalette() const {
    xdotool("key ctrl+alt+c");
    ASSERT_TRUE(eventuallyActive("tolvane"));
  }
  void openSettings() const {
    openPalette();
    press("Settings");
    ASSERT_TRUE(eventuallyActive("tolvane Settings"));
  }
  void openFile(const fs::path& file) const {
    ASSERT_EQ(output(std::string(TOLVANE_PROGRAM) + " open '" + file.string() + "'"), "");
    ASSERT_TRUE(eventually([] { return paletteSize() == wheel; }));
  }

  support::ScriptFolder scripts_;  // before the host, which looks for programs there
  std::optional<Host> host_;
};

TEST_F(RunningHostTest, TheGestureOpensThePaletteOverAFileManagerOnly) {
  openSettings();
  press("Shift and right click in the file manager");
  ASSERT_TRUE(eventually([] {
    return namesOnScreen().find("Shift and right click in the file manager (on)") !=
           std::string::npos;
  }));
  xdotool("key Escape");
  ASSERT_TRUE(eventuallyActive("tolvane"));
  xdotool("key Escape");
  ASSERT_TRUE(eventuallyActive("other"));
  const auto click = [](const std::string& place = "1000 700") {
    xdotool("mousemove " + place + " keydown shift click 3 sleep 0.3 keyup shift");
  };
  click();
  EXPECT_FALSE(isPaletteVisible());
  const Program manager({"xterm", "-class", "Thunar", "-geometry", "60x20+900+550", "-T", "files"});
  ASSERT_TRUE(eventuallyActive("files"));
  click();
  EXPECT_TRUE(eventuallyActive("tolvane"));
  EXPECT_THAT(namesOnScreen(),
              HasSubstr("The clicked file cannot be verified safely. Drop or "
                        "choose the file to confirm it."));
  click("950 600");  // beside the palette, which follows
  EXPECT_TRUE(eventually([] {
    return output("xdotool search --onlyvisible --name '^tolvane$' getwindowgeometry")
               .find("Position: 964,576") != std::string::npos;
  }));
}

TEST_F(RunningHostTest, TheSettingsSwitchLaunchAtLogin) {
  const fs::path entry = fs::path(std::getenv("XDG_CONFIG_HOME")) / "autostart/app.tolvane.desktop";
  openSettings();
  ASSERT_FALSE(fs::exists(entry));
  press("Launch at login");
  EXPECT_TRUE(eventually([&entry] { return fs::exists(entry); }));
  EXPECT_THAT(support::contentOf(entry), HasSubstr("Exec=\"" TOLVANE_DESKTOP "\""));
  press("Launch at login");
  EXPECT_TRUE(eventually([&entry] { return !fs::exists(entry); }));
}

TEST_F(RunningHostTest, TheSettingsGiveTheShortcutAnotherLetter) {
  const fs::path kept = fs::path(std::getenv("XDG_CONFIG_HOME")) / "tolvane/settings.json";
  openSettings();
  press("Control–Option–X");
  ASSERT_TRUE(eventually([&kept] {
    return support::contentOf(kept).find("\"shortcutKey\": \"X\"") != std::string::npos;
  }));
  xdotool("key Escape");
  ASSERT_TRUE(eventuallyActive("tolvane"));
  xdotool("key Escape");
  const fs::path keys = folder_.write("keys", "");
  const Program reader(
      {"sh", "-c", "exec xev -name reader -event keyboard > '" + keys.string() + "'"});
  ASSERT_TRUE(eventuallyActive("reader"));
  xdotool("key ctrl+alt+c");
  EXPECT_TRUE(eventually([&keys] {
    return support::contentOf(keys).find("keysym 0x63, c)") != std::string::npos;
  })) << "a key that opens the palette reaches no other window";
  EXPECT_FALSE(isPaletteVisible());
  xdotool("key ctrl+alt+x");
  EXPECT_TRUE(eventuallyActive("tolvane"));
}

TEST_F(RunningHostTest, TheOpenPanelReturnsFilesAlsoWhenAskedForTwice) {
  const std::string file = folder_.write("a b.csv", "1,2\n");
  openPalette();
  press("Choose Files…");
  ASSERT_TRUE(eventuallyActive("Choose Files"));
  press("Choose Files…");
  xdotool("mousemove 1500 50 click 1");  // the palette stays for the panel
  EXPECT_TRUE(isPaletteVisible());
  const std::string panels = "xdotool search --onlyvisible --name '^Choose Files$' | wc -l";
  EXPECT_EQ(output(panels), "1");
  // The panel completes what is typed, and now and then takes a key for that.
  EXPECT_TRUE(eventually([&] {
    if (output(panels) == "1") {
      xdotool("search --onlyvisible --name '^Choose Files$' windowactivate --sync");
      xdotool("key ctrl+a type --delay 20 '" + file + "'");
      xdotool("key Return sleep 0.5");
    }
    return paletteSize() == wheel;
  }));
  EXPECT_EQ(output(panels), "0");
  ASSERT_TRUE(eventuallyActive("tolvane"));
  xdotool("mousemove 1500 50 click 1");  // it can be dismissed again
  EXPECT_TRUE(eventually([] { return !isPaletteVisible(); }));
}

/// A program that only has a name on the bus, and answers every call with an error.
class NameOwner : public Program {
 public:
  explicit NameOwner(const std::string& name)
      : Program({"/usr/bin/python3",
                 "-c",
                 "import sys; from gi.repository import Gio, GLib; "
                 "Gio.bus_own_name(Gio.BusType.SESSION, sys.argv[1], 0, None, None, None); "
                 "GLib.MainLoop().run()",
                 name}) {
    EXPECT_TRUE(eventually([&name] { return isOnBus(name); }));
  }
};

TEST_F(RunningHostTest, AResultIsRevealedOpenedAndItsPathCopied) {
  scripts_.addRecorder("xdg-open", "opened");
  const NameOwner fileManager("org.freedesktop.FileManager1");
  const fs::path calls = folder_.write("calls", "");
  const Program monitor(
      {"sh", "-c", "exec dbus-monitor member=ShowItems > '" + calls.string() + "'"});
  const fs::path picture = folder_ / "red.png";
  output("convert -size 8x8 xc:red '" + picture.string() + "'");
  openFile(picture);
  press("JPEG, .jpg");
  press("Start");
  press("Copy Path");
  const std::string result = (folder_ / "red.jpg").string();
  EXPECT_TRUE(eventually([&result] { return output("xclip -selection clipboard -o") == result; }));
  press("Open");
  EXPECT_EQ(scripts_.take("opened"), result + "\n");
  press("Show");
  EXPECT_TRUE(eventually([&] {
    return support::contentOf(calls).find("\"file://" + result + "\"") != std::string::npos;
  }));
}

/// Two minutes, of which two seconds were encoded: long to convert, quick to make.
fs::path writeFilm(const support::TemporaryFolder& folder) {
  const fs::path part = folder / "part.mp4";
  fs::path film = folder / "film.mp4";
  EXPECT_EQ(output("ffmpeg -v error -f lavfi -i testsrc2=s=640x360:r=30:d=2 -c:v mpeg4 '" +
                   part.string() + "' && ffmpeg -v error -stream_loop 59 -i '" + part.string() +
                   "' -c copy '" + film.string() + "'"),
            "");
  fs::remove(part);
  return film;
}

TEST_F(RunningHostTest, QuittingEndsARunningJobWithoutATrace) {
  openFile(writeFilm(folder_));
  press("Compress, .mp4");
  press("Start");
  std::string engines;  // process identifiers, separated by spaces
  ASSERT_TRUE(eventually([this, &engines] {
    engines = output("below() { for p in $(pgrep -P $1); do echo $p; below $p; done; }; below " +
                     std::to_string(host_->process()) + " | paste -sd ' '");
    return !engines.empty();
  }));
  EXPECT_THAT(folder_.names(), ElementsAre(StartsWith(".tolvane-"), "film.mp4"));
  host_->signal(SIGTERM);
  EXPECT_EQ(host_->wait(), EXIT_SUCCESS);
  EXPECT_THAT(folder_.names(), ElementsAre("film.mp4"));
  EXPECT_EQ(output("ps -o args= -p " + engines), "");
  EXPECT_FALSE(isOnBus(support::hostName));
}

TEST_F(RunningHostTest, ASecondSignalEndsAJobThatALibraryHolds) {
  support::writeStubbornPdf(folder_ / "a.pdf");
  openFile(folder_ / "a.pdf");
  press("JPEG, .jpg");
  press("Start");
  ASSERT_TRUE(eventually([this] { return folder_.names().size() == 2; }));  // with a workspace
  ASSERT_TRUE(support::eventuallyPaints(host_->process()));
  ASSERT_TRUE(support::eventuallyTakes(host_->process(), SIGTERM));
  host_->signal(SIGTERM);
  const support::StopWatch watch;
  EXPECT_EQ(host_->wait(), -1);
  EXPECT_LT(watch.seconds(), 10);
  EXPECT_THAT(folder_.names(), ElementsAre("a.pdf"));
}

TEST_F(RunningHostTest, RemoteFilesAreRefusedAndNotTakenForTheSelection) {
  EXPECT_EQ(openOnBus("[\"sftp://server/report.pdf\"]"), "()");
  EXPECT_TRUE(eventuallyActive("tolvane"));
  EXPECT_TRUE(eventually([] {
    return namesOnScreen().find("1 file(s) unavailable. Choose a local file.") != std::string::npos;
  }));
  EXPECT_EQ(paletteSize(), "320x300");
  Program second({TOLVANE_DESKTOP, "sftp://server/report.pdf"});
  EXPECT_EQ(second.wait(), EXIT_SUCCESS);
}

TEST_F(RunningHostTest, NoFilesShowAnEmptyPalette) {
  EXPECT_EQ(openOnBus("[]"), "()");
  EXPECT_TRUE(eventuallyActive("tolvane"));
  EXPECT_EQ(paletteSize(), "320x300");
  EXPECT_THAT(onBus(std::string("-d ") + support::hostName +
                    " -o /app/tolvane/Desktop "
                    "-m org.freedesktop.Application.ActivateAction quit '[]' '{}'"),
              HasSubstr("Error"));
}

TEST_F(RunningHostTest, ThePaletteAppearsAtTheTimeOfTheActionThatAskedForIt) {
  // The server counts from the start of the machine.
  const std::string time = output("awk '{print int($1 * 1000) - 4000}' /proc/uptime");
  ASSERT_EQ(output("DESKTOP_STARTUP_ID=launcher-1-a_TIME" + time + " " TOLVANE_PROGRAM " open"),
            "");
  EXPECT_TRUE(eventuallyActive("tolvane"));
  const std::string read =
      "xprop -id $(xdotool search --onlyvisible --name '^tolvane$') _NET_WM_USER_TIME";
  EXPECT_TRUE(eventually([&] { return output(read).ends_with("= " + time); })) << output(read);
}

/// Started as nohup does it.
class HeldHostTest : public RunningHostTest {
 protected:
  void SetUp() override {
    const auto previous = std::signal(SIGHUP, SIG_IGN);  // inherited
    RunningHostTest::SetUp();
    std::signal(SIGHUP, previous);
  }
};

TEST_F(HeldHostTest, OutlivesItsTerminalUntilItIsAskedToEnd) {
  host_->signal(SIGHUP);
  openSettings();
  host_->signal(SIGTERM);
  EXPECT_EQ(host_->wait(), EXIT_SUCCESS);
}

using SecondHostTest = support::SessionTest;

TEST_F(SecondHostTest, FailsWhenTheFirstDoesNotTakeItsFiles) {
  const NameOwner first(support::hostName);
  Program second({TOLVANE_DESKTOP, folder_.write("a.csv", "1,2\n").string()});
  EXPECT_EQ(second.wait(), EXIT_FAILURE);
}

}  // namespace
}  // namespace tolvane
