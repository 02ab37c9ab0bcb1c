#include <functional>
#include <signal.h>
#include <sys/resource.h>

#include <gmock/gmock.h>

#include "engine/primitives/conversion_failure.h"
#include "tests/support/native_job_fixture.h"

namespace tolvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* cancelled = "Cancelled. Your source files are unchanged.";

class JobFaultsTest : public NativeJobFixture {};

TEST_F(JobFaultsTest, TakesOneToAHundredFiles) {
  makePdf("a.pdf", 1);
  EXPECT_EQ(failureOf("merge_pdf", {}), "Choose 1–100 files.");
  EXPECT_EQ(failureOf("merge_pdf", Names(101, "a.pdf")), "Choose 1–100 files.");
  EXPECT_EQ(run("merge_pdf", Names(100, "a.pdf")), Names{"a-combined.pdf"});
}

TEST_F(JobFaultsTest, EditsAndSplitsOnePdfOnly) {
  makePdf("a.pdf", 1);
  for (const char* action : {"edit_pdf", "split_pdf"}) {
    EXPECT_EQ(failureOf(action, {"a.pdf", "a.pdf"}), "Select one PDF for this action.") << action;
  }
}

TEST_F(JobFaultsTest, HandsUniversalJobsOnUnchecked) {
  EXPECT_EQ(failureOf("universal", {}), "This action is unavailable.");
  const ConversionEngine engine([](const ConversionEngine& base, const Job& job) {
    EXPECT_EQ(job.inputs.size(), 0U);
    (void)base;
    return std::vector<std::filesystem::path>{"/result"};
  });
  const Job job = {"universal", {}, std::nullopt, {}, token_, {}};
  EXPECT_THAT(engine.run(job), ElementsAre("/result"));
}

TEST_F(JobFaultsTest, CancellingAtAnyStepLeavesNothing) {
  makePdf("a.pdf", 2);
  makePdf("b.pdf", 2);
  support::writePng(sources_ / "c.png", support::gradient(20, 20, PixelLayout::rgb));
  for (const char* action : {"pdf_png", "rotate_pdf", "merge_pdf", "extract_text"}) {
    for (int step = 1; step <= 4; ++step) {
      CancellationToken fresh;
      Job job = {action, {sources_ / "a.pdf", sources_ / "b.pdf"}, results_.path(), {}, fresh, {}};
      job.progress = [&](int completed, int) {
        if (completed == step) {
          fresh.cancel();
        }
      };
      EXPECT_EQ(support::failureText([&] { return ConversionEngine().run(job); }), cancelled)
          << action << " at step " << step;
      EXPECT_THAT(results_.names(), IsEmpty()) << action << " at step " << step;
    }
  }
  token_.cancel();
  EXPECT_EQ(failureOf("image_png", {"c.png"}), cancelled);
  EXPECT_EQ(failureOf("images_pdf", {"c.png"}), cancelled);
}

TEST_F(JobFaultsTest, JudgesAFileThatWasReplacedAfresh) {
  makePdf("a.pdf", 1);
  EXPECT_EQ(ConversionEngine().inspect(sources_ / "a.pdf").kind, FileKind::pdf);
  sources_.write("a.pdf", "plain text now");
  EXPECT_THAT(failureOf("rotate_pdf", {"a.pdf"}), HasSubstr("This file type is not supported."));
}

void truncate(const std::filesystem::path& file) {
  std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
}

void replace(const std::filesystem::path& file) {
  const std::filesystem::path other = file.parent_path() / "other.pdf";
  support::PdfBuilder builder;
  builder.page({.text = "Another"}).page({.text = "file"}).write(other);
  std::filesystem::rename(other, file);
}

const struct {
  std::string action, label;
  std::function<void(const std::filesystem::path&)> change;
} changeDuringJobCases[] = {
    {"pdf_png", "truncated", truncate},
    {"pdf_png", "replaced", replace},
    {"extract_text", "truncated", truncate},
    {"extract_text", "replaced", replace},
};

TEST_F(JobFaultsTest, EndsTheJobAndLeavesNothing) {
  for (const auto& c : changeDuringJobCases) {
    SCOPED_TRACE(::testing::Message() << c.action << ": " << c.label);
    makePdf("a.pdf", 5);
    Job job = {c.action, {sources_ / "a.pdf"}, results_.path(), {}, token_, {}};
    job.progress = [&](int completed, int) {
      if (completed == 1) {
        c.change(sources_ / "a.pdf");
      }
    };
    EXPECT_EQ(support::failureText([&] { return ConversionEngine().run(job); }),
              "Cannot read this page.");
    EXPECT_THAT(results_.names(), IsEmpty());
  }
}

TEST_F(JobFaultsTest, SaysWhatTheSystemSaysOfAFullDisk) {
  makePdf("a.pdf", 3);
  // Stands for a full disk: no file may grow past 1,000 bytes.
  const auto previousHandler = ::signal(SIGXFSZ, SIG_IGN);
  rlimit previous = {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &previous), 0);
  const rlimit tight = {1000, previous.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
  const std::string failure = failureOf("pdf_png", {"a.pdf"});
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &previous), 0);
  ::signal(SIGXFSZ, previousHandler);
  EXPECT_EQ(failure, "Could not write a-page-1.png: File too large.");
  EXPECT_THAT(results_.names(), IsEmpty());
}

}  // namespace
}  // namespace tolvane
