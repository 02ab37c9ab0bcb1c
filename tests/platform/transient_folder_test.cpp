#include "platform/files/transient_folder.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/ending/last_act.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::TemporaryFolder;

/// Ends with 0 when nothing is left of a folder into which another thread puts its file again and
/// again, as one that is not waited for may.
[[noreturn]] void endWhileItIsWrittenTo(const fs::path& parent) {
  const TransientFolder folder(parent, "t-");
  std::atomic<bool> hasWritten = false;
  std::thread([&] {
    for (;;) {
      std::ofstream(folder.path() / "file") << "content";
      hasWritten = true;
    }
  }).detach();
  while (!hasWritten) {
    std::this_thread::yield();
  }
  LastAct::performAll();
  ::_exit(fs::is_empty(parent) ? 0 : 1);
}

TEST(TransientFolderDeathTest, GoesWithAProcessThatDoesNotWait) {
  const TemporaryFolder parent;
  EXPECT_EXIT(endWhileItIsWrittenTo(parent.path()), ::testing::ExitedWithCode(0), "");
}

struct LeftCase {
  const char* name;
  bool isMarked;
  bool isRemoved;
};

TEST(TransientFolderTest, OfAShortNameIsRemovedOnlyWhenItIsMarked) {
  for (const LeftCase& left : {LeftCase{"t-0123ABCD", true, true},
                               LeftCase{"t-0123ABCD", false, false},
                               LeftCase{"t-20261123", false, false},
                               LeftCase{"t-0123abcd", true, false},
                               LeftCase{"t-0123ABCDE", true, false},
                               LeftCase{"u-0123ABCD", true, false}}) {
    SCOPED_TRACE(left.name);
    const TemporaryFolder parent;
    const fs::path folder = parent / left.name;
    fs::create_directory(folder);
    ::chmod(folder.c_str(), 0700);
    std::ofstream(folder / (left.isMarked ? ".tolvane" : "note")) << "";
    const timespec longAgo[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ::utimensat(AT_FDCWD, folder.c_str(), longAgo, 0);
    { const TransientFolder next(parent.path(), "t-", 8); }
    EXPECT_EQ(!fs::exists(folder), left.isRemoved);
  }
}

}  // namespace
}  // namespace tolvane
