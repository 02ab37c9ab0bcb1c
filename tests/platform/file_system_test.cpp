#include "platform/files/file_system.h"

#include <filesystem>
#include <functional>
#include <ostream>
#include <regex>
#include <set>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files/platform_error.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::contentOf;
using support::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

Bytes bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

TEST(Resolved, FollowsLinksAndRemovesDots) {
  const TemporaryFolder folder;
  const fs::path file = folder.write("real.txt", "x");
  fs::create_directory(folder / "inner");
  fs::create_symlink("../real.txt", folder / "inner/link.txt");
  EXPECT_EQ(FileSystem::resolved(folder / "inner/./../inner/link.txt"), file);
  EXPECT_EQ(FileSystem::resolved(folder / "inner/"), folder / "inner");
  EXPECT_EQ(FileSystem::resolved(folder / "missing/../gone.txt"), folder / "gone.txt");
  EXPECT_EQ(FileSystem::resolved("/"), "/");
  EXPECT_TRUE(FileSystem::resolved("relative.txt").is_absolute());
}

TEST(Resolved, StandardizesWhatLeadsNowhere) {
  const TemporaryFolder folder;
  fs::create_symlink("circle", folder / "circle");
  EXPECT_EQ(FileSystem::resolved(folder / "inner/../circle"), folder / "circle");
}

TEST(Attributes, DescribeWhatALinkLeadsTo) {
  const TemporaryFolder folder;
  fs::create_symlink(folder.write("file", "abc"), folder / "link");
  const FileSystem::Attributes file = FileSystem::attributes(folder / "link");
  EXPECT_TRUE(file.isRegularFile);
  EXPECT_FALSE(file.isDirectory);
  EXPECT_EQ(file.size, 3U);
  EXPECT_TRUE(FileSystem::attributes(folder.path()).isDirectory);
  EXPECT_FALSE(FileSystem::attributes("/dev/null").isRegularFile);
}

TEST(Reading, StopsAtTheLimitAndAtTheEnd) {
  const TemporaryFolder folder;
  const fs::path file = folder.write("file", "abcdef");
  const auto pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_THROW(static_cast<void>(FileSystem::readPrefix(pipe, 4)), PlatformError);
  EXPECT_EQ(FileSystem::readPrefix(file, 0), bytesOf(""));
  EXPECT_EQ(FileSystem::readPrefix(file, 4), bytesOf("abcd"));
  EXPECT_EQ(FileSystem::readPrefix(file, 6), bytesOf("abcdef"));
  EXPECT_EQ(FileSystem::readPrefix(file, 7), bytesOf("abcdef"));
  EXPECT_EQ(FileSystem::readAll(file), bytesOf("abcdef"));
  EXPECT_EQ(FileSystem::readAll(folder.write("empty", "")), bytesOf(""));
  const std::string large(300'000, 'x');
  EXPECT_EQ(FileSystem::readAll(folder.write("large", large)), bytesOf(large));
}

TEST(Reading, DoesNotTrustASizeOfZero) {
  EXPECT_EQ(FileSystem::attributes("/proc/self/status").size, 0U);
  EXPECT_FALSE(FileSystem::readAll("/proc/self/status").empty());
}

TEST(WriteAtomically, ReplacesTheWholeFile) {
  const TemporaryFolder folder;
  const fs::path file = folder.write("file", "something longer");
  FileSystem::writeAtomically(file, bytesOf("new"));
  EXPECT_EQ(contentOf(file), "new");
  EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(WriteAtomically, LeavesNothingBehindWhenItFails) {
  const TemporaryFolder folder;
  fs::create_directories(folder / "taken/inner");
  EXPECT_THROW(FileSystem::writeAtomically(folder / "taken", bytesOf("x")), PlatformError);
  EXPECT_THAT(folder.names(), ElementsAre("taken"));
  EXPECT_TRUE(fs::exists(folder / "taken/inner"));
}

TEST(WriteAtomically, LeavesTheNeighboursAlone) {
  const TemporaryFolder folder;
  folder.write("file.part", "precious");
  FileSystem::writeAtomically(folder / "file", bytesOf("new"));
  EXPECT_EQ(contentOf(folder / "file.part"), "precious");
  EXPECT_THAT(folder.names(), ElementsAre("file", "file.part"));
}

TEST(WriteAtomically, ManagesTheLongestName) {
  const TemporaryFolder folder;
  const std::string longest(255, 'n');
  FileSystem::writeAtomically(folder / longest, bytesOf("x"));
  EXPECT_THAT(folder.names(), ElementsAre(longest));
}

TEST(Append, MakesTheFileAndAddsToIt) {
  const TemporaryFolder folder;
  FileSystem::append(folder / "file", bytesOf("one "));
  FileSystem::append(folder / "file", bytesOf("two"));
  EXPECT_EQ(contentOf(folder / "file"), "one two");
}

TEST(CreateDirectory, SetsThePermissionsWhateverTheMask) {
  const TemporaryFolder folder;
  const mode_t mask = ::umask(0077);
  FileSystem::createDirectory(folder / "open", 0755);
  ::umask(mask);
  EXPECT_EQ(fs::status(folder / "open").permissions(), fs::perms(0755));
}

TEST(HardLink, NeverReplaces) {
  const TemporaryFolder folder;
  const fs::path file = folder.write("file", "new");
  const fs::path taken = folder.write("taken", "old");
  EXPECT_EQ(FileSystem::hardLink(file, folder / "free"), FileSystem::LinkOutcome::linked);
  EXPECT_TRUE(fs::equivalent(file, folder / "free"));
  EXPECT_EQ(FileSystem::hardLink(file, taken), FileSystem::LinkOutcome::nameTaken);
  EXPECT_EQ(contentOf(taken), "old");
  EXPECT_EQ(FileSystem::hardLink(folder / "gone", folder / "x"), FileSystem::LinkOutcome::refused);
}

TEST(RemoveQuietly, RemovesLinksNotWhatTheyLeadTo) {
  const TemporaryFolder folder;
  const fs::path kept = folder.write("kept", "x");
  fs::create_directory(folder / "tree");
  fs::create_symlink(kept, folder / "tree/link");
  FileSystem::removeQuietly(folder / "tree");
  FileSystem::removeQuietly(folder / "missing");
  EXPECT_THAT(folder.names(), ElementsAre("kept"));
}

TEST(NewUuid, IsRandomOfVersionFour) {
  const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  std::set<std::string> seen;
  for (int count = 0; count < 100; ++count) {
    const std::string uuid = FileSystem::newUuid();
    EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
    EXPECT_TRUE(seen.insert(uuid).second);
  }
}

struct FailureCase {
  const char* label;
  std::function<void(const TemporaryFolder&)> call;
  const char* words;
};
void PrintTo(const FailureCase& c, std::ostream* out) {
  *out << c.label;
}

const FailureCase failureCases[] = {
    {"attributes",
     [](const auto& folder) { static_cast<void>(FileSystem::attributes(folder / "gone")); },
     "/gone: No such file or directory"},
    {"read",
     [](const auto& folder) { static_cast<void>(FileSystem::readAll(folder / "gone")); },
     "/gone: No such file or directory"},
    {"read a folder",
     [](const auto& folder) { static_cast<void>(FileSystem::readAll(folder.path())); },
     ": Is a directory"},
    {"write",
     [](const auto& folder) { FileSystem::writeAtomically(folder / "gone/file", {}); },
     "No such file or directory"},
    {"append",
     [](const auto& folder) { FileSystem::append(folder / "gone/file", {}); },
     "/gone/file: No such file or directory"},
    {"copy",
     [](const auto& folder) { FileSystem::copy(folder / "gone", folder / "copy"); },
     "/gone: No such file or directory"},
    {"create",
     [](const auto& folder) { FileSystem::createDirectory(folder.path(), 0700); },
     ": File exists"},
};

class FailureTest : public ::testing::TestWithParam<FailureCase> {};
TEST_P(FailureTest, SpeaksInTheSystemsWords) {
  const TemporaryFolder folder;
  try {
    GetParam().call(folder);
    FAIL() << "no failure";
  } catch (const PlatformError& error) {
    EXPECT_THAT(error.what(), HasSubstr(GetParam().words));
  }
}
INSTANTIATE_TEST_SUITE_P(All, FailureTest, ::testing::ValuesIn(failureCases));

}  // namespace
}  // namespace tolvane
