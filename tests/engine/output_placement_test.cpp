#include "engine/output_placement.h"

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <initializer_list>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/job_workspace.h"
#include "engine/output_names.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::contentOf;
using support::failureText;
using support::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::tuple<const char*, int, const char*> candidateCases[] = {
    {"Report.pdf", 0, "Report.pdf"},
    {"Report.pdf", 1, "Report-converted-2.pdf"},
    {"Report.pdf", 9999, "Report-converted-10000.pdf"},
    {"a.b.png", 2, "a.b-converted-3.png"},
    {".hidden.png", 1, ".hidden-converted-2.png"},
};

TEST(CandidateTest, FollowsTheNumbering) {
  for (const auto& [name, attempt, expected] : candidateCases) {
    EXPECT_EQ(OutputNames::candidate(name, attempt), expected) << name << " #" << attempt;
  }
}

class PlacementTest : public ::testing::Test {
 protected:
  std::string placementFailure() {
    return failureText([&] { return placeAll(staged_.outputs(), folder_.path(), {}, token_); });
  }

  TemporaryFolder folder_;
  TemporaryFolder workspace_;
  CancellationToken token_;
  StagedOutputs staged_{workspace_.path(), token_};
};

TEST_F(PlacementTest, TakesTheFirstFreeNameAndKeepsWhatIsThere) {
  folder_.write("Report.pdf", "old");
  folder_.write("Report-converted-2.pdf", "older");
  staged_.stage(asBytes("new"), "Report.pdf");
  EXPECT_THAT(placeAll(staged_.outputs(), folder_.path(), {}, token_),
              ElementsAre(folder_ / "Report-converted-3.pdf"));
  EXPECT_EQ(contentOf(folder_ / "Report.pdf"), "old");
  EXPECT_EQ(contentOf(folder_ / "Report-converted-3.pdf"), "new");
}

TEST_F(PlacementTest, NeverTakesTheNameOfAnInput) {
  // The input is gone from the folder, so only the comparison of paths protects its name.
  staged_.stage(asBytes("new"), "photo.png");
  EXPECT_THAT(placeAll(staged_.outputs(), folder_.path(), {folder_ / "photo.png"}, token_),
              ElementsAre(folder_ / "photo-converted-2.png"));
}

TEST_F(PlacementTest, RollsBackWhenAnOutputCannotBePlaced) {
  for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt"}) {
    staged_.stage(asBytes("text"), name);
  }
  fs::remove(staged_.outputs()[2].file);
  EXPECT_EQ(placementFailure(),
            "Could not save the result. Check folder permissions and free space.");
  EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST_F(PlacementTest, KeepsWhatTookThePlaceOfAResultWhenRolledBack) {
  for (const char* name : {"file.txt", "folder.txt", "result.txt"}) {
    staged_.stage(asBytes("text"), name);
  }
  {
    Placement placement(folder_.path(), {}, {.refused = "refused", .collisions = ""});
    for (const StagedOutput& output : staged_.outputs()) {
      placement.place(output);
    }
    ASSERT_TRUE(fs::remove(folder_ / "file.txt"));
    folder_.write("file.txt", "mine");
    ASSERT_TRUE(fs::remove(folder_ / "folder.txt"));
    fs::create_directory(folder_ / "folder.txt");
    folder_.write("folder.txt/note", "mine");
    const StagedOutput missing = {workspace_ / "missing", "last.txt"};
    EXPECT_EQ(failureText([&] { placement.place(missing); }), "refused");
  }
  EXPECT_THAT(folder_.names(), ElementsAre("file.txt", "folder.txt"));
  EXPECT_EQ(contentOf(folder_ / "file.txt"), "mine");
  EXPECT_EQ(contentOf(folder_ / "folder.txt/note"), "mine");
}

/// Refuses system calls to this process and its children, as file systems without them do.
void refuseCalls(std::initializer_list<std::pair<long, int>> calls) {
  std::vector<sock_filter> filter = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const auto& [number, error] : calls) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<__u32>(number), 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<__u32>(error)));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program = {static_cast<unsigned short>(filter.size()), filter.data()};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    ::_exit(3);
  }
}

enum class Lacking { links, linksAndExclusiveRenames };

class WithoutLinksTest : public PlacementTest, public ::testing::WithParamInterface<Lacking> {
 protected:
  static void refuse() {
    if (GetParam() == Lacking::links) {
      refuseCalls({{SYS_link, EPERM}, {SYS_linkat, EPERM}});
    } else {
      refuseCalls({{SYS_link, EPERM}, {SYS_linkat, EPERM}, {SYS_renameat2, EINVAL}});
    }
  }
};

TEST_P(WithoutLinksTest, PlacesUnderAFreeNameAndReplacesNothing) {
  folder_.write("a.txt", "old");
  fs::create_symlink(folder_ / "nowhere", folder_ / "a-converted-2.txt");
  staged_.stage(asBytes("new"), "a.txt");
  const auto inChild = [&] {
    refuse();
    const auto placed = placeAll(staged_.outputs(), folder_.path(), {}, token_);
    ::_exit(placed == std::vector{folder_ / "a-converted-3.txt"} ? 0 : 1);
  };
  EXPECT_EXIT(inChild(), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(contentOf(folder_ / "a.txt"), "old");
  EXPECT_EQ(contentOf(folder_ / "a-converted-3.txt"), "new");
  EXPECT_FALSE(fs::exists(folder_ / "nowhere"));
}

TEST_P(WithoutLinksTest, RemovesAgainOnlyWhatItPlaced) {
  for (const char* name : {"mine.txt", "result.txt", "missing.txt"}) {
    staged_.stage(asBytes("text"), name);
  }
  fs::remove(staged_.outputs()[2].file);
  const auto inChild = [&] {
    refuse();
    Placement placement(folder_.path(), {}, {.refused = "refused", .collisions = ""});
    placement.place(staged_.outputs()[0]);
    placement.place(staged_.outputs()[1]);
    fs::remove(folder_ / "mine.txt");
    folder_.write("mine.txt", "mine");
    const std::string text = failureText([&] { placement.place(staged_.outputs()[2]); });
    placement.~Placement();
    ::_exit(text == "refused" ? 0 : 1);
  };
  EXPECT_EXIT(inChild(), ::testing::ExitedWithCode(0), "");
  EXPECT_THAT(folder_.names(), ElementsAre("mine.txt"));
}

INSTANTIATE_TEST_SUITE_P(FileSystems,
                         WithoutLinksTest,
                         ::testing::Values(Lacking::links, Lacking::linksAndExclusiveRenames));

TEST_F(PlacementTest, NamesWhyADiskTakesNoResult) {
  const std::pair<int, const char*> cases[] = {{ENOSPC, "The disk is full."},
                                               {EDQUOT, "The disk quota is used up."},
                                               {ESTALE, "The connection to the output folder"}};
  staged_.stage(asBytes("text"), "a.txt");
  for (const auto& [error, sentence] : cases) {
    const auto inChild = [&, code = error, start = std::string(sentence)] {
      refuseCalls({{SYS_link, code}, {SYS_linkat, code}});
      ::_exit(placementFailure().starts_with(start) ? 0 : 1);
    };
    EXPECT_EXIT(inChild(), ::testing::ExitedWithCode(0), "") << sentence;
  }
}

TEST_F(PlacementTest, GivesResultsTheGroupOfAFolderThatHandsItOn) {
  constexpr gid_t group = 65534;
  if (::geteuid() != 0) {
    GTEST_SKIP() << "only the superuser can make a folder of a group that is not its own";
  }
  ASSERT_EQ(::chown(folder_.path().c_str(), 0, group), 0);
  ASSERT_EQ(::chmod(folder_.path().c_str(), 02775), 0);
  staged_.stage(asBytes("text"), "a.txt");
  (void)placeAll(staged_.outputs(), folder_.path(), {}, token_);
  struct stat status = {};
  ASSERT_EQ(::stat((folder_ / "a.txt").c_str(), &status), 0);
  EXPECT_EQ(status.st_gid, group);
}

TEST_F(PlacementTest, GivesUpAfterTenThousandNames) {
  folder_.write("a.txt", "");
  for (int number = 2; number <= Limits::maxNameAttempts; ++number) {
    fs::create_symlink("nowhere", folder_ / ("a-converted-" + std::to_string(number) + ".txt"));
  }
  staged_.stage(asBytes("text"), "a.txt");
  EXPECT_EQ(placementFailure(), "Too many output filename collisions. Choose another folder.");
}

TEST_F(PlacementTest, RefusesEmptyAndExcessiveOutputs) {
  EXPECT_EQ(failureText([&] { staged_.stage({}, "a.txt"); }),
            "The conversion produced an empty file.");
  staged_.stage(asBytes("x"), "a.txt");
  // Never read: the limit is judged before the first byte is written.
  const BytesView gigabyte(asBytes("x").data(), static_cast<std::size_t>(Limits::maxOutputBytes));
  EXPECT_EQ(failureText([&] { staged_.stage(gigabyte, "b.txt"); }),
            "This job exceeds the 1 GB output safety limit. Process fewer pages or files.");
  EXPECT_EQ(workspace_.names().size(), 1U);
}

TEST_F(PlacementTest, StopsWhenCancelled) {
  staged_.stage(asBytes("x"), "a.txt");
  token_.cancel();
  EXPECT_EQ(failureText([&] { staged_.stage(asBytes("x"), "b.txt"); }),
            "Cancelled. Your source files are unchanged.");
  EXPECT_EQ(placementFailure(), "Cancelled. Your source files are unchanged.");
  EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST(DestinationTest, IsTheInputsFolderOrTheChosenOneResolved) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "real");
  fs::create_symlink("real", folder / "link");
  EXPECT_EQ(prepareDestination(std::nullopt, folder / "a.pdf"), folder.path());
  EXPECT_EQ(prepareDestination(folder / "link/", folder / "a.pdf"), folder / "real");
  EXPECT_EQ(
      failureText([&] { return prepareDestination(folder.write("file", "x"), folder / "a.pdf"); }),
      "The output folder is not writable. Choose another folder.");
}

TEST(DestinationTest, MustBeWritable) {
  const TemporaryFolder folder;
  ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
  // The superuser may write anywhere, so an ordinary user asks.
  const auto asNobody = [&] {
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0 && ::setresuid(nobody, nobody, nobody) != 0) {
      ::_exit(2);
    }
    const std::string text =
        failureText([&] { return prepareDestination(folder.path(), folder / "a.pdf"); });
    ::_exit(text == "The output folder is not writable. Choose another folder." ? 0 : 1);
  };
  EXPECT_EXIT(asNobody(), ::testing::ExitedWithCode(0), "");
}

TEST(JobWorkspaceTest, IsPrivateAndGoesWithItsContent) {
  const TemporaryFolder folder;
  {
    const JobWorkspace workspace(folder.path());
    EXPECT_THAT(folder.names(),
                ElementsAre(::testing::MatchesRegex(
                    "\\.tolvane-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")));
    EXPECT_EQ(fs::status(workspace.path()).permissions(), fs::perms::owner_all);
    fs::create_directories(workspace.path() / "a/b");
  }
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(JobWorkspaceTest, RemovesOnlyAbandonedWorkspaces) {
  const TemporaryFolder folder;
  const JobWorkspace running(folder.path());
  const fs::path abandoned = folder / ".tolvane-00000000-0000-4000-8000-000000000000";
  const fs::path fresh = folder / ".tolvane-00000000-0000-4000-8000-000000000001";
  const fs::path other = folder / ".tolvane-notes";
  for (const fs::path& path : {abandoned, fresh, other}) {
    fs::create_directory(path);
    fs::permissions(path, fs::perms::owner_all);
    std::error_code ignored;
    fs::copy_file("/proc/self/comm", path / "content", ignored);
  }
  const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
  for (const fs::path& path : {abandoned, other, running.path()}) {
    fs::last_write_time(path, longAgo);
  }
  const JobWorkspace next(folder.path());
  EXPECT_FALSE(fs::exists(abandoned));
  EXPECT_TRUE(fs::exists(fresh));
  EXPECT_TRUE(fs::exists(other));
  EXPECT_TRUE(fs::exists(running.path()));
}

}  // namespace
}  // namespace tolvane
