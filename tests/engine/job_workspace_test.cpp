#include "engine/job_workspace.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

TEST(JobWorkspaceTest, GoesWithAProcessThatDoesNotWait) {
  const support::TemporaryFolder folder;
  const JobWorkspace running(folder.path());
  folder.write((running.path().filename() / "half").string(), "written");
  JobWorkspace::removeAll();
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(JobWorkspaceTest, GoesAlsoWhereItsDestinationWasMovedTo) {
  const support::TemporaryFolder folder;
  std::filesystem::create_directory(folder / "before");
  {
    const JobWorkspace running(folder / "before");
    std::filesystem::rename(folder / "before", folder / "after");
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder / "after"));
}

}  // namespace
}  // namespace tolvane
