#include "platform/process/launcher.h"

#include <cerrno>
#include <fcntl.h>
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
  // Without O_CLOEXEC, as a careless library would open it.
  const int leaked = ::open("/dev/null", O_RDONLY);  // NOLINT(android-cloexec-open)
  scripts.add("record",
              "echo on nobody\'s terminal\n"
              "{ ls /proc/$$/fd | tr '\\n' ' '; readlink /proc/$$/fd/1; ps -o sid= -p $$; }"
              " > \"$here/part\" && mv \"$here/part\" \"$here/seen\"");
  Launcher::start("record", {});
  const std::string seen = scripts.take("seen");
  ::close(leaked);
  EXPECT_EQ(seen.find(" " + std::to_string(leaked) + " "), std::string::npos) << seen;
  EXPECT_EQ(seen.find(" " + std::to_string(::getsid(0)) + "\n"), std::string::npos) << seen;
}

TEST(LauncherTest, LeavesNothingToReap) {
  const support::ScriptFolder scripts;
  scripts.addRecorder("record", "seen");
  Launcher::start("record", {});
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  EXPECT_NE(scripts.take("seen"), "(nothing)");
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
