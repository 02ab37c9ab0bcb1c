#include "universal/toolchain/engine_report.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/words.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using ::testing::MatchesRegex;

TEST(EngineReportTest, TellsTheVersionOfEveryInstalledEngine) {
  const EngineReport report = EngineReport::make(LocalToolchain());
  EXPECT_EQ(report.confinement,
            "Engines run confined by mounts of their own, Landlock and a system-call filter: they "
            "read the files of their job and the system's own, and have no network.");
  ASSERT_EQ(report.engines.size(), 12U);
  for (const EngineStatus& engine : report.engines) {
    if (engine.name == "osascript") {
      EXPECT_FALSE(engine.path);
      continue;
    }
    EXPECT_TRUE(engine.path) << engine.name;
    EXPECT_THAT(engine.version, MatchesRegex("[0-9]+\\.[0-9].*")) << engine.name;
    EXPECT_FALSE(engine.packages.empty()) << engine.name;
  }
}

TEST(EngineReportTest, SaysWhatToInstall) {
  const LocalToolchain toolchain(EngineLocations{{"/nowhere"}});
  for (const EngineStatus& engine : EngineReport::make(toolchain).engines) {
    EXPECT_FALSE(engine.path);
    EXPECT_EQ(engine.version, "");
  }
}

/// ImageMagick 6 in the clothes of version 7.
class MagickTest : public ::testing::Test {
 public:
  std::string run(const std::vector<std::string>& arguments) const {
    return std::string(asText(
        LocalToolchain().run({"magick", arguments, folder_.path(), 60}, CancellationToken())));
  }

 protected:
  support::TemporaryFolder folder_;
};

TEST_F(MagickTest, ConvertsIdentifiesAndMounts) {
  run({"-size", "40x30", "xc:red", "-fill", "black", "-draw", "rectangle 1,1 9,9", "a.png"});
  EXPECT_EQ(run({"identify", "-format", "%w %h %m", "a.png"}), "40 30 PNG");
  run({"montage", "a.png", "a.png", "-tile", "2x1", "-geometry", "+0+0", "b.png"});
  EXPECT_EQ(run({"identify", "-format", "%w %h", "b.png"}), "80 30");
}

TEST_F(MagickTest, HasItsOwnPolicy) {
  EXPECT_EQ(run({"-size", "16384x1", "xc:red", "wide.png"}), "");
  std::ofstream(folder_ / "list") << "a.png";
  for (const char* refused :
       {"-size 16385x1 xc:red wider.png", "@list b.png", "https://localhost/a.png b.png"}) {
    EXPECT_EQ(support::failureText([&] { return run(support::words(refused)); }),
              "magick could not process this file (exit 1). Check that the file is valid and the "
              "selected options fit its content.");
  }
}

}  // namespace

}  // namespace tolvane
