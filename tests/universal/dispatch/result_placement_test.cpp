#include "universal/dispatch/result_placement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/universal_fixture.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Text files, which are placed unread, in a workspace beside the destination.
class ResultPlacementTest : public support::UniversalFixture {
 protected:
  std::vector<fs::path> place(const std::vector<fs::path>& results) {
    const auto same = [](const fs::path& result) { return result; };
    return UniversalEngine::placeResults(results, results_.path(), same, inputs_, withEngines());
  }
  std::string failure(const std::vector<fs::path>& results) {
    return support::failureText([&] { return place(results); });
  }

  support::TemporaryFolder results_;
  support::TemporaryFolder workspace_;
  std::vector<FileInfo> inputs_ = {{results_ / "notes.v2.gz", FileKind::archive, ""}};
};

TEST_F(ResultPlacementTest, NeutralNamesBecomeTheInputs) {
  EXPECT_THAT(place({workspace_.write("result.txt", "a"),
                     workspace_.write("result.tar.xyz", "b"),
                     workspace_.write("results.txt", "c"),
                     workspace_.write("result-trim.txt", "d")}),
              ElementsAre(results_ / "notes.v2.txt",
                          results_ / "notes.v2.tar.xyz",
                          results_ / "results.txt",
                          results_ / "result-trim.txt"));
}

TEST_F(ResultPlacementTest, OnlyTheLastExtensionIsSplitOffWhenTheNameIsTaken) {
  results_.write("notes.v2.tar.xyz", "old");
  EXPECT_THAT(place({workspace_.write("result.tar.xyz", "new")}),
              ElementsAre(results_ / "notes.v2.tar-converted-2.xyz"));
  EXPECT_EQ(support::contentOf(results_ / "notes.v2.tar.xyz"), "old");
}

TEST_F(ResultPlacementTest, AnInputsNameIsNeverTaken) {
  inputs_ = {{results_ / "a.txt", FileKind::document, ""}};
  EXPECT_THAT(place({workspace_.write("result.txt", "new")}),
              ElementsAre(results_ / "a-converted-2.txt"));
}

TEST_F(ResultPlacementTest, RefusesWhatIsNoFileWithContent) {
  const fs::path good = workspace_.write("good.txt", "x");
  fs::create_symlink(good, workspace_ / "link.txt");
  fs::create_directory(workspace_ / "folder.txt");
  const std::vector<fs::path> bad = {workspace_.write("empty.txt", ""),
                                     workspace_ / "link.txt",
                                     workspace_ / "folder.txt",
                                     workspace_ / "missing.txt"};
  for (const fs::path& result : bad) {
    EXPECT_EQ(failure({good, result}), "The output could not be verified.") << result;
    EXPECT_THAT(results_.names(), IsEmpty());
  }
}

TEST_F(ResultPlacementTest, RefusesMoreThanAGigabyte) {
  constexpr std::uintmax_t gigabyte = 1'073'741'824;
  const fs::path first = workspace_.write("a.txt", "");
  const fs::path second = workspace_.write("b.txt", "x");
  fs::resize_file(first, gigabyte - 1);  // a hole: takes no room
  EXPECT_THAT(place({first, second}).size(), 2U);
  fs::remove(results_ / "a.txt");
  fs::remove(results_ / "b.txt");
  fs::resize_file(first, gigabyte);
  EXPECT_EQ(failure({first, second}), "The output exceeds the 1 GB safety limit.");
  EXPECT_THAT(results_.names(), IsEmpty());
}

TEST_F(ResultPlacementTest, RemovesWhatWasPlacedWhenALaterResultIsBroken) {
  EXPECT_EQ(failure({workspace_.write("a.txt", "x"), workspace_.write("b.pdf", "no PDF")}),
            "This PDF is damaged or unreadable.");
  EXPECT_THAT(results_.names(), IsEmpty());
  token_.cancel();
  EXPECT_EQ(failure({workspace_ / "a.txt"}), "Cancelled. Your source files are unchanged.");
  EXPECT_THAT(results_.names(), IsEmpty());
}

}  // namespace
}  // namespace tolvane
