#include "universal/toolchain/engine_locations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "universal/toolchain/local_toolchain.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

void install(const fs::path& program) {
  fs::create_directories(program.parent_path());
  fs::copy_file("/bin/true", program);
}

TEST(EngineLocationsTest, PutsThePackageManagerFirstAndTheSystemLast) {
  EXPECT_THAT(
      EngineLocations::standard().candidates("qpdf"),
      ElementsAre("/home/linuxbrew/.linuxbrew/bin/qpdf", "/usr/local/bin/qpdf", "/usr/bin/qpdf"));
}

TEST(EngineLocationsTest, TriesTheHighestVersionOfAPatternFirst) {
  const support::TemporaryFolder folder;
  for (const char* version : {"office7.6", "office24.2", "office24.10", "other"}) {
    install(folder / version / "program/soffice");
  }
  EngineLocations locations = {{"/usr/bin"}};
  locations.special["soffice"] = {folder / "office*/program/soffice", "/usr/bin/soffice"};
  EXPECT_THAT(locations.candidates("soffice"),
              ElementsAre(folder / "office24.10/program/soffice",
                          folder / "office24.2/program/soffice",
                          folder / "office7.6/program/soffice",
                          "/usr/bin/soffice"));
  EXPECT_EQ(LocalToolchain(locations).find("soffice"), folder / "office24.10/program/soffice");
}

TEST(EngineLocationsTest, UsesAnAdapterOnlyWithTheProgramThatItNeeds) {
  const support::TemporaryFolder folder;
  install(folder / "tolvane-magick");
  EngineLocations locations = {{folder / "bin"}};
  locations.adapters["magick"] = {folder / "tolvane-magick", folder / "convert"};
  EXPECT_EQ(LocalToolchain(locations).find("magick"), std::nullopt);
  install(folder / "convert");
  EXPECT_EQ(LocalToolchain(locations).find("magick"), folder / "tolvane-magick");
  install(folder / "bin/magick");
  EXPECT_EQ(LocalToolchain(locations).find("magick"), folder / "bin/magick");
}

TEST(EngineLocationsTest, PassesOverWhatCannotBeExecuted) {
  const support::TemporaryFolder folder;
  fs::create_directories(folder / "first/zip");  // a folder may be "executable", too
  install(folder / "second/zip");
  fs::permissions(folder / "second/zip", fs::perms(0644));
  install(folder / "third/zip");
  const LocalToolchain toolchain(
      EngineLocations{{folder / "first", folder / "second", folder / "third"}});
  EXPECT_EQ(toolchain.find("zip"), folder / "third/zip");
}

}  // namespace

}  // namespace tolvane
