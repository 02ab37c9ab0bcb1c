#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <tuple>
#include <unistd.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/ending/last_act.h"
#include "platform/files/transient_folder.h"
#include "tests/support/eventually.h"
#include "tests/support/failure_text.h"
#include "tests/universal/toolchain/host_program.h"
#include "tests/universal/toolchain/toolchain_fixture.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using support::failureText;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr const char* timedOut = "The local engine timed out. Try a smaller file or selection.";
constexpr const char* tooTalkative = "The engine produced too much diagnostic output.";
constexpr const char* cancelled = "Cancelled. Your source files are unchanged.";

constexpr const char* exit4 =
    "soffice could not process this file (exit 4). Check that the file is valid and the selected "
    "options fit its content.";

const std::tuple<std::string, std::string, double, const char*, double, double> failureCases[] = {
    {"Status", "exit 4", 60, exit4, 0, 20},
    {"Signal", "kill -SEGV $$", 60, "(exit 139)", 0, 20},
    {"Timeout", "sleep 1000 & echo $! > children; wait", 0.3, timedOut, 0.3, 1.2},
    {"NoTime", "sleep 1000", 0, timedOut, 0, 1.2},
    {"Stubborn",
     "trap '' TERM; (trap '' TERM; exec sleep 1000) & echo $! > children\n"
     "while :; do sleep 0.1; done",
     0.3,
     timedOut,
     1.3,
     3},
    {"Flood", "head -c 16777217 /dev/zero; sleep 1000", 60, tooTalkative, 0, 20},
    {"FloodAtTheEnd", "truncate -s 268435457 /proc/self/fd/1", 60, tooTalkative, 0, 20},
    {"LogRemoved", "rm .process-*", 60, ".log: No such file or directory", 0, 20},
    {"LogReplaced", "set -- .process-*; rm $1; mkfifo $1", 60, ".log: Stale file handle", 0, 20},
};

using ToolchainFailureTest = support::ToolchainFixture;

TEST_F(ToolchainFailureTest, SaysWhyAndCleansUp) {
  for (const auto& [label, script, timeout, message, leastSeconds, mostSeconds] : failureCases) {
    SCOPED_TRACE(label);
    // As the office suite, so that there is a socket folder to remove.
    EngineRun order = engine("soffice", "echo $1 > sockets\n" + script);
    order.timeout = timeout;
    const support::StopWatch watch;
    EXPECT_THAT(failureText([&] { return run(order); }), HasSubstr(message));
    EXPECT_GE(watch.seconds(), leastSeconds);
    EXPECT_LT(watch.seconds(), mostSeconds);

    const std::string sockets = support::contentOf(workspace() / "sockets");
    const std::size_t path = sockets.find('/');  // absent where the engine was stopped at once
    EXPECT_FALSE(path != std::string::npos && fs::exists(sockets.substr(path, 16)));
    for (const std::string& name : leftInWorkspace()) {
      EXPECT_THAT(name, ::testing::Not(EndsWith(".log")));
    }
    std::istringstream processes(support::contentOf(workspace() / "children"));
    for (std::string process; processes >> process;) {
      EXPECT_FALSE(isAlive(process));
    }
  }
}

TEST_F(ToolchainFailureTest, NamesAMissingEngine) {
  const EngineRun order = {"nothing", {}, workspace(), 1};
  EXPECT_EQ(failureText([&] { return run(order); }),
            "Install nothing to use this local operation, then reopen the file.");
  EXPECT_TRUE(leftInWorkspace().empty());
}

TEST_F(ToolchainFailureTest, LetsAnEngineEndPolitely) {
  EngineRun order =
      engine("polite", "trap 'echo bye > said; exit 0' TERM; while :; do sleep 0.02; done");
  order.timeout = 0.3;
  const support::StopWatch watch;
  EXPECT_EQ(failureText([&] { return run(order); }), timedOut);
  EXPECT_LT(watch.seconds(), 1.2);
  EXPECT_EQ(support::contentOf(workspace() / "said"), "bye\n");
}

TEST_F(ToolchainFailureTest, DoesNotLaunchWhenCancelledBefore) {
  token_.cancel();
  EXPECT_EQ(failureText([&] { return run(engine("writer", "touch launched")); }), cancelled);
  EXPECT_THAT(leftInWorkspace(), ElementsAre(".engine-tmp"));
}

TEST_F(ToolchainFailureTest, StopsWhenCancelled) {
  const EngineRun order = engine("sleeper", "sleep 1000");
  std::thread canceller([&] {
    std::this_thread::sleep_for(100ms);
    token_.cancel();
  });
  const support::StopWatch watch;
  EXPECT_EQ(failureText([&] { return run(order); }), cancelled);
  EXPECT_LT(watch.seconds(), 1.0);
  canceller.join();
  EXPECT_THAT(leftInWorkspace(), ElementsAre(".engine-tmp"));
}

TEST_F(ToolchainFailureTest, EndsAnEngineThatItsWatcherCondemns) {
  EngineRun order = engine("stubborn", "trap '' TERM; sleep 1000 & echo $! > children; wait");
  int calls = 0;
  order.whileRunning = [&] {
    if (++calls > 3 && fs::exists(workspace() / "children")) {
      throw ConversionFailure::message("Enough.");
    }
  };
  const support::StopWatch watch;
  EXPECT_EQ(failureText([&] { return run(order); }), "Enough.");
  EXPECT_LT(watch.seconds(), 5);
  std::string child = support::contentOf(workspace() / "children");
  child.pop_back();
  EXPECT_FALSE(isAlive(child));
  EXPECT_THAT(leftInWorkspace(), ::testing::UnorderedElementsAre(".engine-tmp", "children"));
}

/// Ends this process with 0 when, at the end of its last acts, nothing is left of what an engine
/// writes without end.
/// @param note gets the number of the engine's child.
[[noreturn]] void endWhileItRuns(const LocalToolchain& toolchain,
                                 EngineRun order,
                                 const fs::path& note) {
  const fs::path parent = order.in;
  const TransientFolder workspace(parent, "t-");
  order.in = workspace.path();
  const CancellationToken never;
  std::thread([&] { failureText([&] { return toolchain.run(order, never); }); }).detach();
  std::string child;
  while (child.empty() || child.back() != '\n') {
    std::this_thread::yield();
    child = support::contentOf(order.in / "child");
  }
  child.pop_back();
  std::ofstream(note) << child;
  LastAct::performAll();
  ::_exit(fs::is_empty(parent) ? 0 : 1);
}

TEST_F(ToolchainFailureTest, LeavesNothingWhenTheProgramDoesNotWaitForTheEngine) {
  const EngineRun order = engine("stubborn",
                                 "trap '' TERM\n"
                                 "(while :; do echo x > file; rm file; done) & echo $! > child\n"
                                 "wait");
  const fs::path note = folder_ / "note";
  EXPECT_EXIT(endWhileItRuns(toolchain_, order, note), ::testing::ExitedWithCode(0), "");
  // An engine that had just begun is ended by its supervisor, once it sees that the program is
  // gone.
  const std::string child = support::contentOf(note);
  EXPECT_TRUE(support::eventually([&child] { return !isAlive(child); }));
}

TEST_F(ToolchainFailureTest, PassesSystemErrorsOn) {
  EXPECT_EQ(failureText([&] { return run(engine("broken", "#!/no/such/shell\n")); }),
            "Could not start the engine. " + (folder_ / "bin/broken").string() +
                ": No such file or directory.");
  EngineRun order = engine("quick", "exit 0");
  order.in = workspace() / "nowhere";
  EXPECT_THAT(failureText([&] { return run(order); }),
              EndsWith(".log: No such file or directory."));
  order.in = workspace();
  fs::remove_all(workspace() / ".engine-tmp");
  folder_.write("work/.engine-tmp", "a file");
  EXPECT_THAT(failureText([&] { return run(order); }), EndsWith(".engine-tmp: File exists."));
  EXPECT_THAT(leftInWorkspace(), ElementsAre(".engine-tmp"));
}

TEST_F(ToolchainFailureTest, RefusesOfficeFilesInBothTemporaryFolders) {
  EngineRun order = engine("soffice", "exit 0");
  order.arguments = {"/var/tmp/report.docx", "file:///tmp/profile"};
  EXPECT_EQ(failureText([&] { return run(order); }),
            "The office suite cannot use files in both /tmp and /var/tmp. Move the file to another "
            "folder.");
}

/// Runs an engine as root where `mounts`, commands of the shell, have changed the machine.
std::string outputAfter(const std::string& mounts,
                        const support::HostProgram& program,
                        const fs::path& workspace,
                        const std::string& engine) {
  std::vector<std::string> command = {"/usr/bin/unshare", "--mount"};
  if (::geteuid() != 0) {
    command.emplace_back("--map-root-user");
  }
  const std::string folder = workspace.string();
  const std::string script = mounts + "; \"$@\"; ls -A " + folder;
  command.insert(command.end(), {"sh", "-c", script, "sh"});
  const std::string level = std::to_string(static_cast<int>(ConfinementLevel::ownMounts));
  const auto host =
      program.command(support::Identity::root, {"run", level, "1000", folder, engine});
  command.insert(command.end(), host.end() - 6, host.end());
  return support::HostProgram::output(command);
}

class BoundedEngineTest : public support::ToolchainFixture {
 protected:
  /// @param memory MiB
  std::string failureOf(const std::string& script, int memory, std::uint64_t output) {
    EngineRun order = engine("glutton", script);
    order.limits = EngineLimits{memory, output};
    return support::failureText([&] { (void)run(order); });
  }
};

TEST_F(BoundedEngineTest, EndsWithItsOwnSentence) {
  constexpr std::uint64_t mebibyte = 1 << 20;
  constexpr const char* growing = "head -c 300000000 /dev/zero | tail -c 290000000 > /dev/null";
  constexpr const char* oneFile = "head -c 8000000 /dev/zero > large";
  constexpr const char* manyFiles =
      "n=0; while :; do n=$((n+1)); head -c 500000 /dev/zero > $n; done";
  EXPECT_EQ(failureOf(growing, 64, mebibyte),
            "glutton needs more than 64 MB of memory for this file. Try a smaller or simpler one.");
  for (const char* script : {oneFile, manyFiles}) {
    EXPECT_EQ(failureOf(script, 64, 2 * mebibyte), "The output exceeds the 1 GB safety limit.");
  }
  EXPECT_EQ(failureOf("head -c 1000000 /dev/zero > small", 64, 2 * mebibyte), "(no failure)");
}

TEST(ChangedMachineTest, FullDiskIsNamed) {
  const support::HostProgram program;
  program.addEngine("filler", "head -c 1000000 /dev/zero");
  const fs::path workspace = program.workspace(support::Identity::root);
  EXPECT_EQ(
      outputAfter(
          "mount -t tmpfs -o size=64k none " + workspace.string(), program, workspace, "filler"),
      "The disk is full. Free some space or choose another output folder.\n.engine-tmp\n");
}

constexpr const char* readOnlyTmp =
    "mount --bind /tmp /tmp; mount -o remount,bind,ro /tmp; export TMPDIR=/nowhere; ";

TEST(ChangedMachineTest, TriesTheConfinementInAnyTemporaryFolder) {
  const support::HostProgram program;
  program.addEngine("quick", "echo fine");
  const fs::path workspace = program.workspace(support::Identity::root);
  const std::string mounts = readOnlyTmp + ("mount -t tmpfs none " + workspace.string());
  EXPECT_EQ(outputAfter(mounts, program, workspace, "quick"), "fine\n.engine-tmp\n");
  // Now without /var/tmp, too.
  EXPECT_THAT(
      outputAfter(mounts + "; mount -t tmpfs -o ro none /var/tmp", program, workspace, "quick"),
      ::testing::MatchesRegex(
          "Local engines are not run, because there is no folder in which their confinement could "
          "be tried out \\(Could not [a-z ]+ /tmp/tolvane-trial-[0-9A-F-]+: Read-only file "
          "system\\)\\. Make /tmp writable\\.\n.engine-tmp\n"));
}

}  // namespace

}  // namespace tolvane
