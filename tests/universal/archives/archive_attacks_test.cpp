#include <filesystem>
#include <ostream>
#include <string>

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
    return failureText([&] {
      UniversalEngine::archive(input, "tar", workspace() / "result.tar", withEngines());
      return 0;
    });
  }
};

struct AttackCase {
  const char* label;
  const char* name;
  std::string archive;
  const char* failure;
};
void PrintTo(const AttackCase& c, std::ostream* out) {
  *out << c.label;
}

class ArchiveAttacksTest : public ArchiveAttackTest,
                           public ::testing::WithParamInterface<AttackCase> {};
TEST_P(ArchiveAttacksTest, AreRefused) {
  const fs::path input = folder_.write(GetParam().name, GetParam().archive);
  EXPECT_EQ(failure(input), GetParam().failure);
  EXPECT_FALSE(fs::exists(workspace() / "result.tar"));
  // What the listing gives away is refused before anything is written.
  EXPECT_EQ(fs::exists(workspace() / "payload"), GetParam().failure == unsafeContents);
  EXPECT_THAT(folder_.names(), ::testing::UnorderedElementsAre("bin", "work", GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(
    Paths,
    ArchiveAttacksTest,
    ::testing::Values(
        AttackCase{"parent", "a.zip", zip({{"fine", "1"}, {"../evil", "2"}}), unsafeListing},
        AttackCase{"parent in a TAR", "a.tar", tar({{"d/../../evil", "2"}}), unsafeListing},
        AttackCase{"absolute", "a.zip", zip({{"/tmp/evil", "2"}}), unsafeListing},
        AttackCase{"absolute in a TAR", "a.tar", tar({{"/tmp/evil", "2"}}), unsafeListing},
        AttackCase{"backslash", "a.zip", zip({{"..\\evil", "2"}}), unsafeListing},
        AttackCase{"drive", "a.zip", zip({{"C:evil", "2"}}), unsafeListing},
        AttackCase{"NUL", "a.zip", zip({{"fine\0/../../evil"s, "2"}}), notListed},
        AttackCase{"name in gzip", "a.gz", gzip("2", "../evil"), unsafeListing},
        AttackCase{"comment that imitates a field",
                   "a.zip",
                   zip({{.name = "../evil", .comment = "x\nPath = fine\n\nPath = fine"}}),
                   unsafeListing},
        AttackCase{"name that imitates an entry",
                   "a.zip",
                   zip({{"../evil\n\nPath = fine\nSize = -5", "2"}}),
                   unsafeListing}));

INSTANTIATE_TEST_SUITE_P(
    Links,
    ArchiveAttacksTest,
    ::testing::Values(
        AttackCase{"link", "a.zip", zip({{"link", "/etc/passwd", zipLink}}), unsafeListing},
        AttackCase{"link of a DOS host",
                   "a.zip",
                   zip({{"link", "/etc/passwd", zipLink, ZipHost::dos}}),
                   unsafeContents},
        AttackCase{"link in a TAR", "a.tar", tar({{"link", "", '2', "/etc"}}), unsafeListing},
        AttackCase{"hard link", "a.tar", tar({{"a", "1"}, {"link", "", '1', "a"}}), unsafeListing},
        AttackCase{"device", "a.tar", tar({{"null", "", '3'}}), unsafeListing},
        AttackCase{"pipe", "a.tar", tar({{"pipe", "", '6'}}), unsafeListing},
        AttackCase{
            "nothing", "a.tar", tar({}), "This archive is empty or cannot be inspected safely."}));

TEST_F(ArchiveAttackTest, JudgesTheTarInAGzipFile) {
  EXPECT_EQ(failure(folder_.write("a.gz", gzip(tar({{"link", "", '2', "/etc"}})))), unsafeListing);
  EXPECT_FALSE(fs::exists(workspace() / "tar-contents/payload"));
}

TEST_F(ArchiveAttackTest, StopsABombWhileItExpands) {
  constexpr std::uint64_t expanded = 2'000'000'000;
  EXPECT_EQ(failure(folder_.write("bomb.gz", gzipBomb(expanded))), unsafeContents);
  const std::uintmax_t written = fs::file_size(workspace() / "payload/bomb");
  RecordProperty("MebibytesWritten", std::to_string(written >> 20));
  EXPECT_GT(written, 536'870'912U);
  EXPECT_LT(written, expanded / 2);
}

}  // namespace
}  // namespace tolvane
