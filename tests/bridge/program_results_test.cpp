#include "bridge/program_results.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/process/launcher.h"
#include "tests/support/script_folder.h"

namespace tolvane {
namespace {

class ProgramResultsTest : public testing::Test {
 protected:
  ProgramResultsTest() {
    scripts_.addRecorder("xdg-open", "opened");
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
  }

  support::ScriptFolder scripts_;
  ProgramResults results_;
};

TEST_F(ProgramResultsTest, OpensOnlyWhatIsThere) {
  const auto file = scripts_.folder().write("a b.txt", "");
  results_.open(scripts_.folder() / "missing.txt");
  results_.open(file);
  EXPECT_EQ(scripts_.take("opened"), file.string() + "\n");
}

TEST_F(ProgramResultsTest, OpensTheFolderWhereNoFileManagerAnswers) {
  results_.reveal({});
  results_.reveal({scripts_.folder() / "a", "/elsewhere/b"});
  EXPECT_EQ(scripts_.take("opened"), scripts_.folder().path().string() + "\n");
}

/// A session bus of its own, on which a file manager could be started.
class SessionBusDaemon {
 public:
  explicit SessionBusDaemon(const support::ScriptFolder& scripts) : folder_(scripts.folder()) {
    const std::string place = folder_.path().string();
    scripts.addRecorder("file-manager", "asked");
    folder_.write(
        "manager.service",
        "[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=" + place + "/file-manager\n");
    folder_.write("bus.conf",
                  "<busconfig><type>session</type><listen>unix:path=" + place +
                      "/bus</listen><pidfile>" + place + "/pid</pidfile><servicedir>" + place +
                      "</servicedir><policy context=\"default\"><allow send_destination=\"*\"/>"
                      "<allow receive_sender=\"*\"/></policy></busconfig>");
    Launcher::start("dbus-daemon", {"--config-file=" + place + "/bus.conf", "--nofork"});
    EXPECT_TRUE(support::eventually([&] {
      return std::filesystem::exists(folder_ / "bus") &&
             !support::contentOf(folder_ / "pid").empty();
    }));
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + place + "/bus").c_str(), 1);
  }
  ~SessionBusDaemon() { ::kill(std::stoi(support::contentOf(folder_ / "pid")), SIGTERM); }
  SessionBusDaemon(const SessionBusDaemon&) = delete;
  SessionBusDaemon& operator=(const SessionBusDaemon&) = delete;

 private:
  const support::TemporaryFolder& folder_;
};

TEST_F(ProgramResultsTest, AsksTheFileManagerOfTheSession) {
  const SessionBusDaemon bus(scripts_);
  const auto file = scripts_.folder().write("result.txt", "");
  results_.reveal({file});
  EXPECT_EQ(scripts_.take("asked"), "\n");
  EXPECT_FALSE(std::filesystem::exists(scripts_.folder() / "opened"));
}

TEST_F(ProgramResultsTest, DoesNotWaitForABusThatIsStuck) {
  sockaddr_un address = {AF_UNIX, {}};
  const std::string path = scripts_.folder() / "stuck";
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listener, 1), 0);
  ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
  const auto begun = std::chrono::steady_clock::now();
  results_.reveal({scripts_.folder() / "a"});
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(5));
  EXPECT_EQ(scripts_.take("opened"), scripts_.folder().path().string() + "\n");
  ::close(listener);
}

TEST_F(ProgramResultsTest, CopiesThroughTheToolOfTheSession) {
  scripts_.addRecorder("xclip", "x11");
  scripts_.addRecorder("wl-copy", "wayland");
  ::unsetenv("WAYLAND_DISPLAY");
  results_.copyText("/a\n/b");
  EXPECT_EQ(scripts_.take("x11"), "-selection\nclipboard\n/a\n/b");
  ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
  results_.copyText("/c");
  EXPECT_EQ(scripts_.take("wayland"), "--type\ntext/plain\n/c");
  ::unsetenv("WAYLAND_DISPLAY");
}

TEST_F(ProgramResultsTest, DoesNothingWhereNothingIsInstalled) {
  const std::string path = std::getenv("PATH");
  ::setenv("PATH", "/nonexistent", 1);
  EXPECT_NO_THROW(results_.open("/"));
  EXPECT_NO_THROW(results_.copyText("text"));
  ::setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace tolvane
