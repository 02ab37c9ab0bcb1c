#include "bridge/program_results.h"

#include <cstdlib>

#include <gtest/gtest.h>

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
