#include "universal/toolchain/local_toolchain.h"

#include <cerrno>
#include <cstdlib>
#include <sys/wait.h>
#include <tuple>

#include "tests/support/failure_text.h"
#include "tests/universal/toolchain/toolchain_fixture.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using support::contentOf;
using support::failureText;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class LocalToolchainTest : public support::ToolchainFixture {};

const std::tuple<const char*, std::vector<std::string>, const char*> outputCases[] = {
    {"echo one; echo two >&2; printf three", {}, "one\ntwo\nthree"},
    {"printf '<%s>' \"$@\"",
     {"", "a b", "$HOME", "\"'\\", "--", "line\nend"},
     "<><a b><$HOME><\"'\\><--><line\nend>"},
    // There is nothing to read, and no terminal.
    {"cat; if tty; then :; fi; cat /dev/tty 2>/dev/null || echo none", {}, "not a tty\nnone\n"},
    {"echo warned; exit 3", {}, "warned\n"},
};

TEST_F(LocalToolchainTest, ReturnsBothOutputsInTheOrderOfWriting) {
  for (const auto& [script, arguments, expected] : outputCases) {
    EngineRun order = engine("talker", script);
    order.arguments = arguments;
    order.accepted = {0, 3};
    EXPECT_EQ(run(order), expected);
    EXPECT_THAT(leftInWorkspace(), ElementsAre(".engine-tmp"));
  }
}

TEST_F(LocalToolchainTest, KeepsTheLogAndTheScratchFolderToTheOwner) {
  EngineRun order = engine("lister", "stat -c '%a %n' .process-* .engine-tmp | cut -c1-12; pwd");
  EXPECT_THAT(
      run(order),
      ::testing::MatchesRegex("600 .process\n700 .engine-\n" + workspace().string() + "\n"));
}

TEST_F(LocalToolchainTest, PassesOnlyAFewVariablesOn) {
  ::setenv("MAGICK_TEMPORARY_PATH", "/inherited", 1);  // NOLINT(concurrency-mt-unsafe)
  ::setenv("TOLVANE_INHERITED", "inherited", 1);       // NOLINT(concurrency-mt-unsafe)
  EngineRun order =
      engine("talker",
             "echo $TMPDIR; echo $MAGICK_TEMPORARY_PATH; echo $HOME; echo $XDG_CACHE_HOME; echo "
             "$TOLVANE_INHERITED");
  order.environment = {{"XDG_CACHE_HOME", "/mine"}};
  const std::string scratch = (workspace() / ".engine-tmp").string() + "\n";
  EXPECT_EQ(run(order), scratch + scratch + scratch + "/mine\n\n");
}

TEST_F(LocalToolchainTest, NamesTheRulesOfLocalTimeToArchiversThatLackThem) {
  ::unsetenv("TZ");  // NOLINT(concurrency-mt-unsafe)
  EXPECT_EQ(run(engine("7zz", "echo $TZ")), ":/etc/localtime\n");
  EXPECT_EQ(run(engine("soffice", "echo $TZ")), "\n");
  ::setenv("TZ", "Asia/Tokyo", 1);  // NOLINT(concurrency-mt-unsafe)
  EXPECT_EQ(run(engine("7zz", "echo $TZ")), "Asia/Tokyo\n");
}

TEST_F(LocalToolchainTest, AllowsExactlySixteenMebibytesOfOutput) {
  EXPECT_EQ(run(engine("flooder", "head -c 16777216 /dev/zero; sleep 0.2")).size(), 16'777'216U);
}

TEST_F(LocalToolchainTest, LeavesNoProcessBehind) {
  const EngineRun order = engine("parent",
                                 "sleep 1000 & echo $!\n"
                                 "(trap '' TERM HUP; sleep 1000 & echo $!; wait) &\n"
                                 "(sh -c 'sleep 1000 & echo $!')\nsleep 0.05");
  std::istringstream processes(run(order));
  int count = 0;
  for (std::string process; processes >> process; ++count) {
    EXPECT_FALSE(isAlive(process));
  }
  EXPECT_EQ(count, 3);
}

TEST_F(LocalToolchainTest, WorksInFoldersWithAnyName) {
  const fs::path odd = workspace() / "quote\" back\\slash 'n space\nline äß→";
  fs::create_directory(odd);
  EngineRun order = engine("writer", "echo done > file; cat file");
  order.in = odd;
  EXPECT_EQ(run(order), "done\n");
  EXPECT_EQ(contentOf(odd / "file"), "done\n");
}

TEST_F(LocalToolchainTest, RunsTheEngineInAnotherFolder) {
  fs::create_directory(workspace() / "clean");
  EngineRun order = engine("lister", "ls -A; pwd; echo x > ../file && echo written");
  order.currentDirectory = workspace() / "clean";
  EXPECT_EQ(run(order), (workspace() / "clean").string() + "\nwritten\n");
}

TEST_F(LocalToolchainTest, LetsTheEngineWriteOnlyBelowTheWritableRoot) {
  fs::create_directory(workspace() / "root");
  fs::create_directory_symlink(workspace() / "root", workspace() / "link");
  EngineRun order = engine("writer",
                           "echo x > root/file && echo inside\n"
                           "(echo x > file) 2>/dev/null || echo refused\n"
                           "(echo x > .engine-tmp/file) 2>/dev/null || echo refused");
  order.writableRoot = workspace() / "link";
  EXPECT_EQ(run(order), "inside\nrefused\nrefused\n");

  order = engine("loser", "(echo x > file) 2>/dev/null || echo refused");
  order.writableRoot = workspace() / "nowhere";
  EXPECT_EQ(run(order), "refused\n");
}

TEST_F(LocalToolchainTest, GivesTheOfficeSuiteASocketFolderOfItsOwn) {
  EngineRun order = engine("soffice",
                           "directory=${1#-env:OSL_SOCKET_PATH=}\n"
                           "echo $directory; echo $2; stat -c %a $directory\n"
                           "touch $directory/pipe /var/tmp/pipe && echo written");
  order.arguments = {"--headless"};
  const std::string first = run(order);
  const std::string second = run(order);
  const fs::path folder = first.substr(0, first.find('\n'));
  EXPECT_THAT(first, StartsWith("/tmp/tv-"));
  EXPECT_EQ(folder.string().size(), 16U);
  EXPECT_THAT(first, HasSubstr("\n--headless\n700\nwritten\n"));
  EXPECT_NE(first, second);
  EXPECT_FALSE(fs::exists(folder));
  EXPECT_FALSE(fs::exists("/var/tmp/pipe"));
}

TEST_F(LocalToolchainTest, LeavesNothingBehindAfterAThousandRuns) {
  const EngineRun order = engine("quick", "#!/bin/true");
  const auto descriptors = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  run(order);
  const auto before = descriptors();
  const std::string mounts = contentOf("/proc/self/mounts");
  constexpr int runs = 1000;
  for (int count = 0; count < runs; ++count) {
    run(order);
  }
  EXPECT_EQ(descriptors(), before);
  EXPECT_EQ(contentOf("/proc/self/mounts"), mounts);
  EXPECT_THAT(leftInWorkspace(), ElementsAre(".engine-tmp"));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

}  // namespace

}  // namespace tolvane
