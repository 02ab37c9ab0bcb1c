#include "platform/files/file_system.h"

#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <regex>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files/platform_error.h"
#include "platform/files/tree_removal.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::contentOf;
using support::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

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
  EXPECT_THROW((void)FileSystem::readPrefix(pipe, 4), PlatformError);
  EXPECT_EQ(asText(FileSystem::readPrefix(file, 0)), "");
  EXPECT_EQ(asText(FileSystem::readPrefix(file, 4)), "abcd");
  EXPECT_EQ(asText(FileSystem::readPrefix(file, 6)), "abcdef");
  EXPECT_EQ(asText(FileSystem::readPrefix(file, 7)), "abcdef");
  EXPECT_EQ(asText(FileSystem::readAll(file)), "abcdef");
  EXPECT_EQ(asText(FileSystem::readAll(folder.write("empty", ""))), "");
  const std::string large(300'000, 'x');
  EXPECT_EQ(asText(FileSystem::readAll(folder.write("large", large))), large);
}

TEST(Reading, DoesNotTrustASizeOfZero) {
  EXPECT_EQ(FileSystem::attributes("/proc/self/status").size, 0U);
  EXPECT_FALSE(FileSystem::readAll("/proc/self/status").empty());
}

TEST(WriteAtomically, ReplacesTheWholeFileOfAnyName) {
  for (const std::string& name : {std::string("file"), std::string(255, 'n')}) {
    const TemporaryFolder folder;
    const fs::path file = folder.write(name, "something longer");
    FileSystem::writeAtomically(file, asBytes("new"));
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_THAT(folder.names(), ElementsAre(name));
  }
}

TEST(WriteAtomically, LeavesNothingBehindWhenItFails) {
  const TemporaryFolder folder;
  fs::create_directories(folder / "taken/inner");
  EXPECT_THROW(FileSystem::writeAtomically(folder / "taken", asBytes("x")), PlatformError);
  EXPECT_THAT(folder.names(), ElementsAre("taken"));
  EXPECT_TRUE(fs::exists(folder / "taken/inner"));
}

TEST(WriteAtomically, LeavesTheNeighboursAlone) {
  const TemporaryFolder folder;
  folder.write("file.part", "precious");
  FileSystem::writeAtomically(folder / "file", asBytes("new"));
  EXPECT_EQ(contentOf(folder / "file.part"), "precious");
  EXPECT_THAT(folder.names(), ElementsAre("file", "file.part"));
}

TEST(Append, MakesTheFileAndAddsToIt) {
  const TemporaryFolder folder;
  FileSystem::append(folder / "file", asBytes("one "));
  FileSystem::append(folder / "file", asBytes("two"));
  EXPECT_EQ(contentOf(folder / "file"), "one two");
}

TEST(CreateDirectory, SetsThePermissionsWhateverTheMask) {
  const TemporaryFolder folder;
  const mode_t mask = ::umask(0077);
  FileSystem::createDirectory(folder / "open", 0755);
  ::umask(mask);
  EXPECT_EQ(fs::status(folder / "open").permissions(), fs::perms(0755));
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

TEST(RemoveTreeQuietly, RemovesLargeTreesAndLinksNotWhatTheyLeadTo) {
  const TemporaryFolder folder;
  const fs::path kept = folder.write("kept", "x");
  const fs::path tree = folder / "tree";
  for (int number = 0; number < 40; ++number) {
    const fs::path inner = tree / std::to_string(number % 7) / std::to_string(number);
    fs::create_directories(inner / "empty");
    fs::create_symlink(kept, inner / "link");
    fs::create_directory_symlink(folder / ".", inner / "up");
  }
  fs::create_directory(folder / "small");
  for (const char* name : {"tree", "small", "missing"}) {
    removeTreeQuietly(folder / name);
  }
  EXPECT_THAT(folder.names(), ElementsAre("kept"));
  EXPECT_EQ(contentOf(kept), "x");
}

TEST(RemoveTreeQuietly, RemovesTreesDeeperThanAPathMayBe) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "deep");
  const std::string name(200, 'n');
  int parent = ::open((folder / "deep").c_str(), O_PATH | O_DIRECTORY);
  for (int depth = 0; depth < 100; ++depth) {
    ASSERT_EQ(::mkdirat(parent, name.c_str(), 0700), 0);
    const int inner = ::openat(parent, name.c_str(), O_PATH | O_DIRECTORY);
    ::close(std::exchange(parent, inner));
  }
  ::close(::openat(parent, "file", O_CREAT | O_WRONLY, 0600));
  ::close(parent);
  removeTreeQuietly(folder / "deep");
  EXPECT_THAT(folder.names(), IsEmpty());
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

TEST(Failures, SpeakInTheSystemsWords) {
  const TemporaryFolder folder;
  const fs::path gone = folder / "gone";
  const std::string missing = "/gone: No such file or directory";
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { (void)FileSystem::attributes(gone); }, missing},
      {[&] { (void)FileSystem::readAll(gone); }, missing},
      {[&] { (void)FileSystem::readAll(folder.path()); }, ": Is a directory"},
      {[&] { FileSystem::writeAtomically(gone / "file", {}); }, "No such file or directory"},
      {[&] { FileSystem::append(gone / "file", {}); }, "/gone/file: No such file or directory"},
      {[&] { FileSystem::copy(gone, folder / "copy"); }, missing},
      {[&] { FileSystem::createDirectory(folder.path(), FileSystem::ownerOnly); },
       ": File exists"}};
  for (const auto& [call, words] : cases) {
    EXPECT_THROW(call(), PlatformError);
    EXPECT_THAT(support::failureText(call), HasSubstr(words));
  }
}

}  // namespace
}  // namespace tolvane
