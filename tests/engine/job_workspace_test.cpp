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

}  // namespace
}  // namespace tolvane
