#include "universal/archives/extracted_tree.h"

#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/files/tree_removal.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;

constexpr const char* fine = "(no failure)";
constexpr const char* refused = "Unsafe archive contents were rejected.";

class ExtractedTreeTest : public ::testing::Test {
 protected:
  ExtractedTreeTest() { fs::create_directories(tree_ / "a/.b"); }

  [[nodiscard]] std::string checked() const {
    return support::failureText([&] { ExtractedTree::check(tree_.path(), token_); });
  }
  [[nodiscard]] std::string watched() const {
    return support::failureText([&] { ExtractedTree::Watch(tree_.path(), token_)(); });
  }
  /// Makes a file that takes no room.
  [[nodiscard]] fs::path file(const char* name, std::uintmax_t size) const {
    fs::path path = tree_.write(name, "");
    fs::resize_file(path, size);
    return path;
  }

  [[nodiscard]] static unsigned modeOf(const fs::path& path) {
    return static_cast<unsigned>(fs::status(path).permissions());
  }
  /// Makes this process one of an ordinary user whose tree it is.
  void becomeOwner() const {
    constexpr uid_t nobody = 65534;
    if (::geteuid() != 0) {
      return;
    }
    bool isDone = ::chown(tree_.path().c_str(), nobody, nobody) == 0;
    for (const auto& item : fs::recursive_directory_iterator(tree_.path())) {
      isDone = isDone && ::chown(item.path().c_str(), nobody, nobody) == 0;
    }
    if (!isDone || ::setresuid(nobody, nobody, nobody) != 0) {
      ::_exit(2);
    }
  }

  support::TemporaryFolder tree_;
  CancellationToken token_;
};

TEST_F(ExtractedTreeTest, CountsEveryFile) {
  const fs::path deep = file("a/.b/.c", 400'000'000);
  const fs::path high = file("d", 136'870'912);
  EXPECT_EQ(checked(), fine);
  fs::resize_file(high, 136'870'913);
  EXPECT_EQ(checked(), refused);
}

TEST_F(ExtractedTreeTest, RefusesLinksAndPipes) {
  for (const char* target : {"nowhere", "/"}) {
    fs::create_symlink(target, tree_ / "a/.b/link");
    EXPECT_EQ(checked(), refused);
    fs::remove(tree_ / "a/.b/link");
  }
  ASSERT_EQ(::mkfifo((tree_ / "a/pipe").c_str(), 0600), 0);
  EXPECT_EQ(checked(), refused);
}

TEST_F(ExtractedTreeTest, OpensWhatItsOwnerMayNotRead) {
  const fs::path hidden = tree_.write("a/.b/hidden", "x");
  const fs::path script = tree_.write("a/script", "x");
  const auto asOwner = [&] {  // the superuser may read anything
    becomeOwner();
    fs::permissions(script, fs::perms(0711));
    for (const fs::path& closed : {hidden, tree_ / "a/.b", tree_ / "a", tree_.path()}) {
      fs::permissions(closed, fs::perms::none);
    }
    const bool isFine = checked() == fine && modeOf(tree_ / "a/.b") == 0500 &&
                        modeOf(hidden) == 0400 && modeOf(script) == 0711;
    ::_exit(isFine ? 0 : 1);
  };
  EXPECT_EXIT(asOwner(), ::testing::ExitedWithCode(0), "");
}

TEST_F(ExtractedTreeTest, CountsWhatItsOwnerMayNotRead) {
  const fs::path large = file("a/.b/large", 536'870'913);
  const auto asOwner = [&] {
    becomeOwner();
    fs::permissions(tree_ / "a/.b", fs::perms::owner_read);  // names alone
    ::_exit(checked() == refused && fs::exists(large) ? 0 : 1);
  };
  EXPECT_EXIT(asOwner(), ::testing::ExitedWithCode(0), "");
}

TEST_F(ExtractedTreeTest, IsCheckedAndRemovedHoweverDeep) {
  std::string folder = "a";
  for (int depth = 1; depth < 1200; ++depth) {
    fs::create_directory(tree_ / (folder += "/b"));
  }
  const fs::path large = file((folder + "/large").c_str(), 536'870'913);
  const auto withFewFiles = [&] {
    constexpr rlim_t fewFiles = 64;
    rlimit limit = {};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = fewFiles;
    bool isFine = ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
    isFine = isFine && checked() == refused && watched() == refused;
    fs::resize_file(large, 1);
    isFine = isFine && checked() == fine && watched() == fine;
    removeTreeQuietly(tree_.path());
    ::_exit(isFine && !fs::exists(tree_.path()) ? 0 : 1);
  };
  EXPECT_EXIT(withFewFiles(), ::testing::ExitedWithCode(0), "");
  EXPECT_FALSE(fs::exists(tree_.path()));
}

TEST_F(ExtractedTreeTest, StopsWhenCancelled) {
  token_.cancel();
  EXPECT_EQ(checked(), "Cancelled. Your source files are unchanged.");
}

TEST_F(ExtractedTreeTest, LetsATreePassThatIsNotThere) {
  fs::remove_all(tree_.path());
  EXPECT_EQ(checked(), fine);
}

TEST_F(ExtractedTreeTest, IsWatchedWhileItGrows) {
  ExtractedTree::Watch watch(tree_.path(), token_);
  watch();
  const fs::path large = file("large", 536'870'913);
  EXPECT_EQ(support::failureText([&] {
              for (;;) {
                watch();
              }
            }),
            refused);
}

}  // namespace
}  // namespace tolvane
