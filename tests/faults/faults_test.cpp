// Every call of the system that the program makes fails once, on every job of a table.

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using support::contentOf;

/// A function of the C library and an error that it is known for.
struct Fault {
  const char* function;
  int error;
};
constexpr Fault faults[] = {{"open", EACCES},
                            {"open", EMFILE},
                            {"openat", ENFILE},
                            {"read", EIO},
                            {"write", ENOSPC},
                            {"mkdir", EDQUOT},
                            {"link", EROFS},
                            {"rename", EIO},
                            {"fstat", EOVERFLOW},
                            {"fsync", EIO},
                            {"flock", ENOLCK},
                            {"pipe2", EMFILE},
                            {"mmap", ENOMEM},
                            {"posix_spawn", EAGAIN}};

struct JobCase {
  const char* label;
  std::vector<std::string> words;  ///< of the command line; "@name" is a file of the folder
  int callsTried;                  ///< of each function, the first ones
};
void PrintTo(const JobCase& job, std::ostream* out) {
  *out << job.label;
}

/// A folder with sources, and the real program run in it with the injector before it.
class FaultTest : public testing::TestWithParam<JobCase> {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(folder_ / "files");
    support::PdfBuilder().page({.text = "One"}).write(file("a.pdf"));
    support::PdfBuilder().page({.text = "Two"}).write(file("b.pdf"));
    support::writePng(file("p.png"), support::quarters(16, 16));
    folder_.write("files/t.md", "# Title\n\nA *paragraph*.\n");
    sources_ = contents();
  }

  [[nodiscard]] std::filesystem::path file(const std::string& name) const {
    return folder_ / "files" / name;
  }

  using Contents = std::vector<std::pair<std::string, std::string>>;
  /// All that stands in the folder of the sources and results, hidden files included.
  [[nodiscard]] Contents contents() const {
    Contents all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / "files")) {
      all.emplace_back(entry.path().filename(), entry.is_regular_file() ? contentOf(entry) : "/");
    }
    std::ranges::sort(all);
    return all;
  }

  /// @return the exit status, or minus the signal that ended the program.
  int run(const Fault& fault, int number) {
    std::vector<std::string> words = {TOLVANE_PROGRAM};
    for (const std::string& word : GetParam().words) {
      words.push_back(word.starts_with('@') ? file(word.substr(1)).string() : word);
    }
    const std::filesystem::path program = std::filesystem::canonical(TOLVANE_PROGRAM);
    std::vector<std::string> settings = {std::string("LD_PRELOAD=") + FAULT_INJECTOR,
                                         "PATH=/usr/bin:/bin",
                                         "HOME=" + folder_.path().string(),
                                         "TOLVANE_FAULT_PROGRAM=" + program.string(),
                                         "TOLVANE_FAULT_COUNT=" + (folder_ / "count").string(),
                                         "TOLVANE_FAULT=" + std::string(fault.function) + " " +
                                             std::to_string(number) + " " +
                                             std::to_string(fault.error)};
    return finish(start(words, settings));
  }

  [[nodiscard]] int callsOf(const char* function) {
    EXPECT_EQ(run({function, 0}, 0), 0) << errors();
    takeResultsAway();
    return static_cast<int>(std::filesystem::file_size(folder_ / "count"));
  }

  void takeResultsAway() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / "files")) {
      const std::string name = entry.path().filename();
      const auto isNamed = [&name](const auto& source) { return source.first == name; };
      if (std::ranges::none_of(sources_, isNamed)) {
        std::filesystem::remove_all(entry);
      }
    }
  }

  [[nodiscard]] std::string errors() const { return contentOf(folder_ / "errors"); }

  Contents sources_;

 private:
  static std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
      pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
  }

  pid_t start(std::vector<std::string>& words, std::vector<std::string>& settings) {
    posix_spawn_file_actions_t actions = {};
    ::posix_spawn_file_actions_init(&actions);
    const auto open = [&](int descriptor, const std::string& path) {
      const int flags = O_RDWR | O_CREAT | O_TRUNC;
      ::posix_spawn_file_actions_addopen(&actions, descriptor, path.c_str(), flags, 0600);
    };
    open(STDIN_FILENO, (folder_ / "input").string());
    open(STDOUT_FILENO, (folder_ / "results").string());
    open(STDERR_FILENO, (folder_ / "errors").string());
    pid_t process = 0;
    EXPECT_EQ(::posix_spawn(&process,
                            TOLVANE_PROGRAM,
                            &actions,
                            nullptr,
                            pointersTo(words).data(),
                            pointersTo(settings).data()),
              0);
    ::posix_spawn_file_actions_destroy(&actions);
    return process;
  }

  static int finish(pid_t process) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

  support::TemporaryFolder folder_;
};

TEST_P(FaultTest, EndsInAResultOrASentence) {
  int results = 0;
  int sentences = 0;
  for (const Fault& fault : faults) {
    const int calls = std::min(callsOf(fault.function), GetParam().callsTried);
    for (int number = 1; number <= calls; ++number) {
      SCOPED_TRACE(testing::Message() << fault.function << " " << number << " " << fault.error);
      const int status = run(fault, number);
      if (status == 0) {
        ++results;
        EXPECT_GT(contents().size(), sources_.size());
        takeResultsAway();
      } else {
        ++sentences;
        EXPECT_EQ(status, 1) << errors();
        EXPECT_TRUE(errors().ends_with(".\n")) << errors();
      }
      EXPECT_EQ(contents(), sources_);
      takeResultsAway();
    }
  }
  EXPECT_GT(results, 5) << "too little was tried";
  EXPECT_GT(sentences, 5) << "too little was tried";
}

INSTANTIATE_TEST_SUITE_P(
    Jobs,
    FaultTest,
    testing::Values(JobCase{"merge", {"action", "merge_pdf", "@a.pdf", "@b.pdf"}, 20},
                    JobCase{"picture", {"convert", "@p.png", "--to", "jpg"}, 20},
                    JobCase{"document", {"convert", "@t.md", "--to", "html"}, 20}),
    [](const auto& job) { return std::string(job.param.label); });

}  // namespace
}  // namespace tolvane
