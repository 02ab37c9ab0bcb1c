#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"
#include "universal/dispatch/universal_engine.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::TemporaryFolder;
using ::testing::StartsWith;

/// @return the hidden folder of the job that is running there.
fs::path workspaceIn(const fs::path& destination) {
  for (const fs::directory_entry& entry : fs::directory_iterator(destination)) {
    if (entry.path().filename().string().starts_with(".tolvane-")) {
      return entry.path();
    }
  }
  return {};
}

// Whoever may change the folder of the results may do so between two files of a job.
TEST(ReplacedWorkspaceTest, IsNoticedBeforeAnEngineWritesThere) {
  const TemporaryFolder sources;
  const TemporaryFolder results;
  const TemporaryFolder victim;
  std::vector<fs::path> pictures;
  for (const char* name : {"one.png", "two.png"}) {
    pictures.push_back(sources / name);
    support::writePng(pictures.back(), support::quarters(20, 20));
  }
  const ConversionEngine engine = UniversalEngine::completeEngine(LocalToolchain());
  const CancellationToken token;
  const auto swap = [&](int done, int) {
    if (done == 1) {
      const fs::path workspace = workspaceIn(results.path());
      fs::rename(workspace, results / "taken");
      fs::create_directory_symlink(victim.path(), workspace);
    }
  };
  const Job job = {
      "universal", pictures, results.path(), {{"capabilityID", "convert.webp"}}, token, swap};
  EXPECT_THAT(support::failureText([&] { (void)engine.run(job); }),
              StartsWith("The working folder of this job was moved or replaced while it ran."));
  EXPECT_TRUE(fs::is_empty(victim.path()));
  EXPECT_FALSE(fs::exists(results / "taken"));
}

}  // namespace
}  // namespace tolvane
