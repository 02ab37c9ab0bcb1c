#pragma once

#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/eventually.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/temporary_folder.h"

namespace tolvane::support {

/// The built program, run like a user does, with its streams in files.
class ProgramTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(results());
    makePdf("a.pdf", 2);
  }

  [[nodiscard]] std::filesystem::path results() const { return folder_ / "results"; }

  void makePdf(const char* name, int pages) {
    PdfBuilder builder;
    for (int page = 0; page < pages; ++page) {
      builder.page({.text = "Page"});
    }
    builder.write(folder_ / name);
  }

  pid_t start(std::vector<std::string> words,
              const std::string& input = "",
              const char* program = TOLVANE_PROGRAM) {
    folder_.write("in", input);
    posix_spawn_file_actions_t actions = {};
    ::posix_spawn_file_actions_init(&actions);
    const auto open = [&](int descriptor, const char* name, int flags) {
      ::posix_spawn_file_actions_addopen(
          &actions, descriptor, (folder_.path() / name).c_str(), flags, 0600);
    };
    open(STDIN_FILENO, in_, O_RDONLY);
    open(STDOUT_FILENO, out_, O_WRONLY | O_CREAT | O_TRUNC);
    open(STDERR_FILENO, "err", O_WRONLY | O_CREAT | O_TRUNC);
    words.insert(words.begin(), program);
    std::vector<char*> pointers;
    for (std::string& word : words) {
      pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    pid_t process = 0;
    EXPECT_EQ(::posix_spawn(&process, program, &actions, nullptr, pointers.data(), environ), 0);
    ::posix_spawn_file_actions_destroy(&actions);
    return process;
  }

  /// @return the exit status, or minus the signal that ended the process.
  static int finish(pid_t process) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

  int run(std::vector<std::string> words,
          const std::string& input = "",
          const char* program = TOLVANE_PROGRAM) {
    return finish(start(std::move(words), input, program));
  }

  /// Starts a job that takes seconds and waits until it has begun to write.
  pid_t startLongJob() {
    makePdf("long.pdf", 400);
    const pid_t process =
        start({"action", "pdf_png", path("long.pdf"), "--out", results().string()});
    const bool hasBegun = eventually([this] {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(results())) {
        if (entry.is_regular_file()) {
          return true;
        }
      }
      return false;
    });
    EXPECT_TRUE(hasBegun);
    return process;
  }

  [[nodiscard]] std::vector<std::string> resultNames() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(results())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  [[nodiscard]] std::string path(const char* name) const { return (folder_ / name).string(); }
  [[nodiscard]] std::string out() const { return contentOf(folder_ / "out"); }
  [[nodiscard]] std::string err() const { return contentOf(folder_ / "err"); }

  TemporaryFolder folder_;
  const char* in_ = "in";  // in the folder, or an absolute path
  const char* out_ = "out";
};

}  // namespace tolvane::support
