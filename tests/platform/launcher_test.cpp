#include "platform/process/launcher.h"

#include <cerrno>
#include <fcntl.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/platform_error.h"
#include "tests/support/script_folder.h"

namespace tolvane {
namespace {

TEST(LauncherTest, GivesArgumentsAndInputAsTheyAre) {
  const support::ScriptFolder scripts;
  scripts.addRecorder("record", "seen");
  const std::string input(200'000, 'x');  // more than a pipe takes
  Launcher::start("record", {"a b", "", "$c"}, input);
  EXPECT_EQ(scripts.take("seen"), "a b\n\n$c\n" + input);
}

TEST(LauncherTest, StartsASessionWithoutOurDescriptorsOrOutput) {
  const support::ScriptFolder scripts;
  // Without O_CLOEXEC, as a careless library would leave it, and past those that a shell opens.
  const int leaked = ::fcntl(STDIN_FILENO, F_DUPFD, 50);
  ASSERT_GE(leaked, 50);
  scripts.add("record",
              "descriptors=$(echo $(ls /proc/$$/fd))\n"
              "output=$(readlink /proc/$$/fd/1 /proc/$$/fd/2)\n"
              "session=$(cut -d ' ' -f 6 /proc/$$/stat)\n"
              "printf '%s\\n' \"$descriptors\" \"$output\" \"$session\" > \"$here/part\"\n"
              "mv \"$here/part\" \"$here/seen\"");
  Launcher::start("record", {});
  std::istringstream seen(scripts.take("seen"));
  ::close(leaked);
  std::string descriptors;
  std::string output;
  std::string error;
  int session = 0;
  std::getline(seen, descriptors);
  seen >> output >> error >> session;
  EXPECT_TRUE(descriptors.starts_with("0 1 ")) << descriptors;
  EXPECT_EQ(descriptors.find(std::to_string(leaked)), std::string::npos) << descriptors;
  EXPECT_EQ(output, "/dev/null");
  EXPECT_EQ(error, "/dev/null");
  EXPECT_GT(session, 0);
  EXPECT_NE(session, ::getsid(0));
}

TEST(LauncherTest, LeavesNothingToReap) {
  const support::ScriptFolder scripts;
  scripts.addRecorder("record", "seen");
  Launcher::start("record", {});
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  EXPECT_EQ(scripts.take("seen"), "\n");
}

TEST(LauncherTest, SaysWhatCannotBeStarted) {
  const support::ScriptFolder scripts;
  const auto file = scripts.folder().write("broken", "#!/nonexistent/interpreter\n");
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  EXPECT_THROW(Launcher::start("broken", {}), PlatformError);
  EXPECT_THROW(Launcher::start("no-such-program", {}), PlatformError);
  EXPECT_THROW(Launcher::start("/no/such/program", {}), PlatformError);
}

TEST(LauncherTest, KnowsWhatIsInstalled) {
  const support::ScriptFolder scripts;
  scripts.add("there", "");
  scripts.folder().write("not-executable", "");
  EXPECT_TRUE(Launcher::isInstalled("there"));
  EXPECT_FALSE(Launcher::isInstalled("not-executable"));
  EXPECT_FALSE(Launcher::isInstalled("no-such-program"));
}

}  // namespace
}  // namespace tolvane
