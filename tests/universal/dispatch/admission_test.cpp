
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/installed_engines.h"
#include "tests/support/universal_job_fixture.h"

namespace tolvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr const char* cancelled = "Cancelled. Your source files are unchanged.";

class AdmissionTest : public UniversalJobFixture {
 protected:
  void SetUp() override { sources_.write("a.txt", "Some text."); }
};

TEST_F(AdmissionTest, NeedsFilesAndAChoice) {
  const auto failure = [&](std::size_t files, Value::Map options) {
    return support::failureText(
        [&, files] { return runJob(Names(files, "a.txt"), options, "universal"); });
  };
  const Value::Map chosen = {{"capabilityID", "convert.nothing"}};
  const std::string choose = "Choose a conversion or tool first.";
  EXPECT_EQ(failure(0, chosen), choose);
  EXPECT_EQ(failure(101, chosen), choose);
  EXPECT_EQ(failure(1, {}), choose);
  EXPECT_EQ(failure(1, {{"capabilityID", 1}}), choose);
  EXPECT_EQ(failure(100, chosen), "This operation is not applicable to the current selection.");
}

TEST_F(AdmissionTest, ReportsWhatIsMissing) {
  EXPECT_EQ(failureOf("convert.md", {"missing.txt"}), support::failureText([&] {
              return ConversionEngine().inspect(sources_ / "missing.txt");
            }));
  const support::InstalledEngines none = {};
  engine_ = UniversalEngine::completeEngine(none.toolchain());
  EXPECT_EQ(failureOf("convert.docx", {"a.txt"}),
            "Requires local pandoc. Install it and reselect the file.");
  EXPECT_THAT(results_.names(), IsEmpty());
}

TEST_F(AdmissionTest, NeedsAWritableFolder) {
  for (const auto& unusable : {results_ / "missing", results_.write("file", "x")}) {
    destination_ = unusable;
    EXPECT_EQ(failureOf("convert.md", {"a.txt"}), "Choose a writable output folder.");
  }
}

TEST_F(AdmissionTest, ResultsGoBesideTheFirstFileUnlessAFolderIsChosen) {
  destination_.reset();
  std::filesystem::create_directory(sources_ / "other");
  sources_.write("other/b.txt", "More text.");
  EXPECT_THAT(runJob({"other/b.txt", "a.txt"}, {{"capabilityID", "convert.md"}}, "universal"),
              ElementsAre(sources_ / "other/b.md", sources_ / "other/b-converted-2.md"));
  EXPECT_THAT(sources_.names(), ElementsAre("a.txt", "other"));
}

TEST_F(AdmissionTest, ReportsEachFileAndStopsBetweenThem) {
  sources_.write("b.txt", "More text.");
  run("convert.md", {"a.txt", "b.txt"});
  EXPECT_THAT(progress_, ElementsAre(Pair(1, 2), Pair(2, 2)));
  std::filesystem::remove_all(results_ / "a.md");
  std::filesystem::remove_all(results_ / "a-converted-2.md");

  afterEachFile_ = [this] { token_.cancel(); };
  EXPECT_EQ(failureOf("convert.md", {"a.txt", "b.txt"}), cancelled);
  EXPECT_THAT(progress_, ElementsAre(Pair(1, 2)));
  EXPECT_THAT(results_.names(), IsEmpty());
}

}  // namespace
}  // namespace tolvane
