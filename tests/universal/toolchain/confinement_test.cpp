#include "universal/toolchain/confinement.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"
#include "tests/support/eventually.h"
#include "tests/support/failure_text.h"
#include "tests/universal/toolchain/host_program.h"

namespace tolvane {

namespace {

using support::HostProgram;
using support::Identity;

constexpr int newest = 1000;

struct Setting {
  const char* label;
  ConfinementLevel level;
  int newestRules;  // of Landlock: older kernels leave more to the system-call filter
  Identity identity;
  const char* engine;
};

void PrintTo(const Setting& setting, std::ostream* out) {
  *out << setting.label;
}

struct Line {
  std::string outcome;
  std::string control;
  std::string attack;
};

std::vector<Line> linesOf(const std::string& output) {
  std::vector<Line> lines;
  std::istringstream stream(output);
  Line line;
  while (std::getline(stream, line.outcome, '\t') && std::getline(stream, line.control, '\t') &&
         std::getline(stream, line.attack)) {
    lines.push_back(line);
  }
  return lines;
}

std::vector<Line> attack(const std::string& level,
                         int newestRules,
                         Identity identity,
                         const char* engine) {
  const HostProgram host;
  const std::string output = HostProgram::output(host.command(
      identity,
      {"attack", level, std::to_string(newestRules), host.workspace(identity).string(), engine}));
  std::vector<Line> lines = linesOf(output);
  if (lines.empty()) {
    ADD_FAILURE() << output;
  }
  return lines;
}

constexpr std::size_t attacks = 88;

class AttackTest : public ::testing::TestWithParam<Setting> {};

TEST_P(AttackTest, IsRefused) {
  const Setting& setting = GetParam();
  const std::vector<Line> lines = attack(std::to_string(static_cast<int>(setting.level)),
                                         setting.newestRules,
                                         setting.identity,
                                         setting.engine);
  ASSERT_EQ(lines.size(), attacks + 1);
  for (const Line& line : lines) {
    if (line.outcome == "inside") {
      EXPECT_EQ(line.control, "works");
    } else {
      EXPECT_EQ(line.outcome, "refused") << line.attack;
    }
  }
}

constexpr auto ownMounts = ConfinementLevel::ownMounts;
constexpr auto bubblewrap = ConfinementLevel::bubblewrap;
constexpr auto withoutMounts = ConfinementLevel::withoutMounts;
constexpr auto user = Identity::ordinaryUser;
constexpr auto root = Identity::root;

INSTANTIATE_TEST_SUITE_P(
    Everywhere,
    AttackTest,
    ::testing::Values(Setting{"MountsUser", ownMounts, newest, user, "attacker"},
                      Setting{"MountsRoot", ownMounts, newest, root, "attacker"},
                      Setting{"MountsUserOffice", ownMounts, newest, user, "soffice"},
                      Setting{"MountsRootOffice", ownMounts, newest, root, "soffice"},
                      Setting{"MountsUserRules2", ownMounts, 2, user, "attacker"},
                      Setting{"MountsRootRules4", ownMounts, 4, root, "attacker"},
                      Setting{"BubblewrapUser", bubblewrap, newest, user, "attacker"},
                      Setting{"BubblewrapUserOffice", bubblewrap, newest, user, "soffice"},
                      Setting{"BubblewrapUserRules2", bubblewrap, 2, user, "attacker"},
                      Setting{"RulesUser", withoutMounts, newest, user, "attacker"},
                      Setting{"RulesRoot", withoutMounts, newest, root, "attacker"},
                      Setting{"RulesUserOffice", withoutMounts, newest, user, "soffice"},
                      Setting{"RulesUserRules2", withoutMounts, 2, user, "attacker"},
                      Setting{"RulesRootRules2", withoutMounts, 2, root, "attacker"}),
    [](const auto& test) { return test.param.label; });

/// An attack that fails anyway would prove nothing.
class UnconfinedAttackTest : public ::testing::TestWithParam<Identity> {};

TEST_P(UnconfinedAttackTest, Succeeds) {
  for (const Line& line : attack("none", newest, GetParam(), "attacker")) {
    const bool expected =
        line.control == "always" || (line.control == "root" && GetParam() == Identity::root);
    if (expected) {
      EXPECT_EQ(line.outcome, "succeeded") << line.attack;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AsUserAndRoot,
                         UnconfinedAttackTest,
                         ::testing::Values(Identity::ordinaryUser, Identity::root));

TEST(ConfinementTest, TakesTheFirstLevelThatHolds) {
  EXPECT_EQ(Confinement::ofThisMachine().level(), ConfinementLevel::ownMounts)
      << Confinement::ofThisMachine().description();
  EXPECT_EQ(Confinement::firstThatHolds({withoutMounts, ownMounts}).level(), withoutMounts);
}

TEST(ConfinementTest, RunsNothingWhereNothingHolds) {
  // As on a kernel without Landlock.
  const Confinement none = Confinement::firstThatHolds({ownMounts, bubblewrap, withoutMounts}, 0);
  EXPECT_EQ(none.level(), std::nullopt);
  const std::string sentence =
      "Local engines are not run, because this system cannot confine them (Could not start the "
      "engine. Landlock: Function not implemented). Use a kernel with Landlock and allow user "
      "namespaces.";
  EXPECT_EQ(none.description(), sentence);
  EXPECT_EQ(support::failureText([&] { return none.command({}); }), sentence);
}

/// @return whether some process has `word` among its arguments.
bool isAnybodyRunning(const std::string& word) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    // A process that ends meanwhile cannot be read, which getline() tells without an exception.
    std::ifstream file(entry.path() / "cmdline");
    for (std::string argument; std::getline(file, argument, '\0');) {
      if (argument.find(word) != std::string::npos) {
        return true;
      }
    }
  }
  return false;
}

using HostDeath = std::pair<ConfinementLevel, Identity>;
class HostDeathTest : public ::testing::TestWithParam<HostDeath> {};

TEST_P(HostDeathTest, EndsTheEngineAndItsDescendants) {
  const auto& [confinement, identity] = GetParam();
  const std::string level = std::to_string(static_cast<int>(confinement));
  const HostProgram program;
  const std::string mark = std::to_string(100'000 + ::getpid()) + "." + level;
  program.addEngine("stubborn",
                    "trap '' TERM HUP INT\n(trap '' TERM; sleep " + mark + ") &\n(sleep " + mark +
                        " &) &\ntouch ready\nsleep " + mark + "\n");
  const auto workspace = program.workspace(identity);
  const pid_t host = HostProgram::start(
      program.command(identity,
                      {"run", level, std::to_string(newest), workspace.string(), "stubborn"}),
      program.workspace(Identity::root) / "output");
  using namespace std::chrono_literals;
  EXPECT_TRUE(
      support::eventually([&] { return std::filesystem::exists(workspace / "ready"); }, 20s));
  EXPECT_TRUE(isAnybodyRunning(mark));
  ::kill(host, SIGKILL);
  const auto killed = std::chrono::steady_clock::now();
  EXPECT_TRUE(support::eventually([&] { return !isAnybodyRunning(mark); }));
  // A tenth of this when the machine has nothing else to do.
  EXPECT_LT(std::chrono::steady_clock::now() - killed, 1s);
  ::waitpid(host, nullptr, 0);
}

INSTANTIATE_TEST_SUITE_P(Everywhere,
                         HostDeathTest,
                         ::testing::Values(HostDeath(ownMounts, user),
                                           HostDeath(ownMounts, root),
                                           HostDeath(bubblewrap, user),
                                           HostDeath(withoutMounts, user)));

}  // namespace

}  // namespace tolvane
