#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/failure_text.h"
#include "tests/support/universal_fixture.h"
#include "tests/universal/archives/archive_builder.h"
#include "universal/archives/archive.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using namespace support;

const char* const unsafeListing =
    "This archive contains unsafe paths, links or too much expanded data.";
const char* const unsafeContents = "Unsafe archive contents were rejected.";

const char* const notListed =
    "7zz could not process this file (exit 2). Check that the file is valid and the selected "
    "options fit its content.";

class ArchiveAttackTest : public UniversalFixture {
 protected:
  std::string failure(const fs::path& input) {
    const auto output = workspace() / "result.tar";
    return failureText([&] { UniversalEngine::archive(input, "tar", output, withEngines()); });
  }
};

const struct {
  std::string label, name, archive, failure;
} archiveAttacksCases[] = {
    {"parent", "a.zip", zip({{"fine", "1"}, {"../evil", "2"}}), unsafeListing},
    {"parent in a TAR", "a.tar", tar({{"d/../../evil", "2"}}), unsafeListing},
    {"absolute", "a.zip", zip({{"/tmp/evil", "2"}}), unsafeListing},
    {"absolute in a TAR", "a.tar", tar({{"/tmp/evil", "2"}}), unsafeListing},
    {"backslash", "a.zip", zip({{"..\\evil", "2"}}), unsafeListing},
    {"drive", "a.zip", zip({{"C:evil", "2"}}), unsafeListing},
    {"NUL", "a.zip", zip({{"fine\0/../../evil"s, "2"}}), notListed},
    {"name in gzip", "a.gz", gzip("2", "../evil"), unsafeListing},
    {"comment that imitates a field",
     "a.zip",
     zip({{.name = "../evil", .comment = "x\nPath = fine\n\nPath = fine"}}),
     unsafeListing},
    {"name that imitates an entry",
     "a.zip",
     zip({{"../evil\n\nPath = fine\nSize = -5", "2"}}),
     unsafeListing},
    {"link", "a.zip", zip({{"link", "/etc/passwd", zipLink}}), unsafeListing},
    {"link of a DOS host",
     "a.zip",
     zip({{"link", "/etc/passwd", zipLink, ZipHost::dos}}),
     unsafeContents},
    {"link in a TAR", "a.tar", tar({{"link", "", '2', "/etc"}}), unsafeListing},
    {"hard link", "a.tar", tar({{"a", "1"}, {"link", "", '1', "a"}}), unsafeListing},
    {"device", "a.tar", tar({{"null", "", '3'}}), unsafeListing},
    {"pipe", "a.tar", tar({{"pipe", "", '6'}}), unsafeListing},
    {"nothing", "a.tar", tar({}), "This archive is empty or cannot be inspected safely."},
};

TEST_F(ArchiveAttackTest, AreRefused) {
  for (const auto& c : archiveAttacksCases) {
    SCOPED_TRACE(c.label);
    const fs::path input = folder_.write(c.name, c.archive);
    EXPECT_EQ(failure(input), c.failure);
    EXPECT_FALSE(fs::exists(workspace() / "result.tar"));
    // What the listing gives away is refused before anything is written.
    EXPECT_EQ(fs::exists(workspace() / "payload"), c.failure == unsafeContents);
    EXPECT_THAT(folder_.names(), ::testing::UnorderedElementsAre("bin", "work", c.name));
    fs::remove(input);
    fs::remove_all(workspace() / "payload");
  }
}

TEST_F(ArchiveAttackTest, JudgesTheTarInAGzipFile) {
  EXPECT_EQ(failure(folder_.write("a.gz", gzip(tar({{"link", "", '2', "/etc"}})))), unsafeListing);
  EXPECT_FALSE(fs::exists(workspace() / "tar-contents/payload"));
}

const std::pair<std::size_t, std::string> archiveSizes[] = {{10'001, unsafeListing},
                                                            {10'000, "(no failure)"}};

TEST_F(ArchiveAttackTest, AreRefusedForTheNumberOfTheirEntries) {
  constexpr std::uint32_t folderMode = 0040755;
  for (const auto& [count, expected] : archiveSizes) {
    std::vector<ZipEntry> entries;
    while (entries.size() < count) {
      // Folders are made in a quarter of the time of files.
      entries.push_back({.name = std::to_string(entries.size()) + "/", .mode = folderMode});
    }
    EXPECT_EQ(failure(folder_.write("a.zip", zip(entries))), expected);
    const bool isAccepted = expected != unsafeListing;
    EXPECT_EQ(fs::exists(workspace() / "result.tar"), isAccepted);
    EXPECT_EQ(fs::exists(workspace() / "payload"), isAccepted);
  }
  const fs::directory_iterator payload(workspace() / "payload");
  EXPECT_EQ(std::distance(begin(payload), end(payload)), 10'000);
}

TEST_F(ArchiveAttackTest, StopsABombWhileItExpands) {
  constexpr std::uint64_t limit = 536'870'912;
  constexpr std::uint64_t expanded = 2'000'000'000;
  EXPECT_EQ(failure(folder_.write("bomb.gz", gzipBomb(expanded))), unsafeContents);
  const std::uintmax_t written = fs::file_size(workspace() / "payload/bomb");
  RecordProperty("MebibytesWritten", std::to_string(written >> 20));
  EXPECT_GT(written, limit);
  EXPECT_LT(written, limit / 4 * 5);
}

}  // namespace
}  // namespace tolvane
