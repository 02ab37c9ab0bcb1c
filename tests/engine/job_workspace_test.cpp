#include "engine/job_workspace.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/descriptor.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::TemporaryFolder;

constexpr uid_t stranger = 65534;

void makeOld(const fs::path& path) {
  const timespec longAgo[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
  ::utimensat(AT_FDCWD, path.c_str(), longAgo, AT_SYMLINK_NOFOLLOW);
}

TEST(JobWorkspaceTest, GoesAlsoWhereItsDestinationWasMovedTo) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "before");
  {
    const JobWorkspace running(folder / "before");
    fs::rename(folder / "before", folder / "after");
  }
  EXPECT_TRUE(fs::is_empty(folder / "after"));
}

enum class Replacement { none, folder, link };

TEST(JobWorkspaceTest, IsMissedWhenReplacedAndLeavesWhatTookItsPlace) {
  for (const Replacement replacement :
       {Replacement::none, Replacement::folder, Replacement::link}) {
    const TemporaryFolder folder;
    const TemporaryFolder victim;
    victim.write("kept", "x");
    fs::path name;
    {
      const JobWorkspace running(folder.path());
      name = running.path();
      EXPECT_NO_THROW(running.requireInPlace());
      std::ofstream(running.path() / "half") << "written";
      fs::rename(running.path(), folder / "elsewhere");
      if (replacement == Replacement::folder) {
        fs::create_directory(name);
        std::ofstream(name / "kept") << "x";
      } else if (replacement == Replacement::link) {
        fs::create_directory_symlink(victim.path(), name);
      }
      EXPECT_EQ(support::failureText([&] { return running.lasting(name / "half"); }),
                "The working folder of this job was moved or replaced while it ran. Nothing was "
                "saved. Choose an output folder that only you can change.");
      EXPECT_EQ(support::contentOf(running.lastingPath() / "half"), "written");
    }
    EXPECT_FALSE(fs::exists(folder / "elsewhere"));
    EXPECT_EQ(fs::exists(name / "kept"), replacement != Replacement::none);
  }
}

struct AbandonedCase {
  const char* label;
  bool isRemoved;
  std::function<void(const fs::path&)> alter;  // of a folder of ours, old, unlocked, mode 0700
};

TEST(JobWorkspaceTest, TakesOnlyOwnFoldersForAbandoned) {
  Descriptor lock;
  const TemporaryFolder elsewhere;
  elsewhere.write("content", "x");
  const AbandonedCase cases[] = {
      {"ours", true, [](const fs::path&) {}},
      {"of another user",
       false,
       [](const fs::path& path) { ASSERT_EQ(::lchown(path.c_str(), stranger, stranger), 0); }},
      {"others may enter", false, [](const fs::path& path) { ::chmod(path.c_str(), 0755); }},
      {"others may write", false, [](const fs::path& path) { ::chmod(path.c_str(), 01777); }},
      {"locked",
       false,
       [&](const fs::path& path) {
         lock = Descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY));
         ASSERT_EQ(::flock(lock.number(), LOCK_EX), 0);
       }},
      {"young",
       false,
       [](const fs::path& path) { fs::last_write_time(path, fs::file_time_type::clock::now()); }},
      {"a link",
       false,
       [&](const fs::path& path) {
         fs::remove_all(path);
         fs::create_directory_symlink(elsewhere.path(), path);
         ::chmod(elsewhere.path().c_str(), 0700);
         makeOld(elsewhere.path());
         makeOld(path);
       }},
  };
  for (const AbandonedCase& abandoned : cases) {
    if (std::string_view(abandoned.label) == "of another user" && ::geteuid() != 0) {
      continue;  // cannot be made
    }
    const TemporaryFolder folder;
    const fs::path path = folder / ".tolvane-00000000-0000-4000-8000-000000000000";
    fs::create_directory(path);
    ::chmod(path.c_str(), 0700);
    std::ofstream(path / "content") << "x";
    makeOld(path);
    abandoned.alter(path);
    { const JobWorkspace next(folder.path()); }
    EXPECT_EQ(!fs::exists(path / "content"), abandoned.isRemoved) << abandoned.label;
  }
}

constexpr int branches = 200;

fs::path branch(const fs::path& tree, int number) {
  return tree / ("a" + std::to_string(number));
}

/// Folders a0, a1, ... with b/x in each, old, and open to everybody as far as the owner allows.
void layOut(const fs::path& tree) {
  std::error_code ignored;
  for (int number = 0; number < branches; ++number) {
    fs::create_directories(branch(tree, number) / "b", ignored);
    std::ofstream(branch(tree, number) / "b/x") << "x";
  }
  ::chmod(tree.c_str(), 0700);
  makeOld(tree);
}

/// Swaps folders of the tree for links to the victim's folder, until it is ended.
class Swapper {
 public:
  Swapper(const fs::path& tree, const fs::path& victim, uid_t user) : process_(::fork()) {
    if (process_ == 0) {
      if (::setresuid(user, user, user) != 0) {
        ::_exit(1);
      }
      const fs::path aside = tree.parent_path() / ("aside-" + std::to_string(user));
      for (int number = 0;; number = (number + 1) % branches) {
        const fs::path folder = branch(tree, number);
        if (::rename(folder.c_str(), aside.c_str()) == 0) {
          (void)!::symlink(victim.c_str(), folder.c_str());
          ::sched_yield();
          ::unlink(folder.c_str());
          (void)!::rename(aside.c_str(), folder.c_str());
        }
        makeOld(tree);
      }
    }
  }
  ~Swapper() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  Swapper(const Swapper&) = delete;
  Swapper& operator=(const Swapper&) = delete;

 private:
  pid_t process_;
};

void runAs(uid_t user, const std::function<void()>& work) {
  const pid_t process = ::fork();
  if (process == 0) {
    ::_exit(::setresuid(user, user, user) == 0 ? (work(), 0) : 1);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  ASSERT_EQ(status, 0);
}

/// The stranger's tree is refused as a whole; in a tree of our own that another process changes
/// meanwhile, each step must hold.
TEST(JobWorkspaceTest, RemovesNothingThroughLinksSwappedInWhileItWalks) {
  for (const uid_t user : {::geteuid(), stranger}) {
    if (user != ::geteuid() && ::geteuid() != 0) {
      continue;  // this process cannot become the stranger
    }
    const TemporaryFolder shared;
    ::chmod(shared.path().c_str(), 01777);
    const TemporaryFolder victim;
    fs::create_directory(victim / "b");
    victim.write("b/x", "kept");
    const fs::path tree = shared / ".tolvane-00000000-0000-4000-8000-000000000000";
    runAs(user, [&] { layOut(tree); });
    const Swapper swapper(tree, victim.path(), user);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (std::chrono::steady_clock::now() < end && fs::exists(victim / "b/x")) {
      { const JobWorkspace next(shared.path()); }
      runAs(user, [&] { layOut(tree); });
    }
    EXPECT_TRUE(fs::exists(victim / "b/x")) << "as user " << user;
  }
}

}  // namespace
}  // namespace tolvane
