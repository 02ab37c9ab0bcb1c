#include <functional>
#include <signal.h>
#include <string>
#include <sys/resource.h>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

#include "engine/primitives/conversion_failure.h"
#include "tests/support/native_job_fixture.h"

namespace tolvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* cancelled = "Cancelled. Your source files are unchanged.";

class JobFaultsTest : public NativeJobFixture {
 protected:
  /// @param step the report at which the job is cancelled, from 1; at 0 it is cancelled beforehand.
  std::string failureWhenCancelled(const std::string& action, const Names& inputs, int step) {
    CancellationToken token;
    Job job = {action, {}, destination_, {}, token, {}};
    for (const std::string& input : inputs) {
      job.inputs.push_back(sources_ / input);
    }
    int reports = 0;
    job.progress = [&](int, int) {
      if (++reports == step) {
        token.cancel();
      }
    };
    if (step == 0) {
      token.cancel();
    }
    return support::failureText([&] { return ConversionEngine().run(job); });
  }
};

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

/// An action, its inputs, and how often it reports.
const std::tuple<const char*, std::vector<std::string>, int> cancellationCases[] = {
    {"pdf_png", {"a.pdf", "b.pdf"}, 3},
    {"pdf_jpeg", {"a.pdf", "b.pdf"}, 3},
    {"rotate_pdf", {"a.pdf", "b.pdf"}, 3},
    {"merge_pdf", {"a.pdf", "b.pdf"}, 3},
    {"split_pdf", {"a.pdf"}, 2},
    {"edit_pdf", {"a.pdf"}, 1},
    {"extract_text", {"a.pdf", "b.pdf"}, 3},
    {"ocr", {"b.pdf"}, 1},
    {"image_png", {"c.png", "d.png"}, 2},
    {"image_jpeg", {"c.png", "d.png"}, 2},
    {"images_pdf", {"c.png", "d.png"}, 2},
    {"resize", {"c.png", "d.png"}, 2},
};

TEST_F(JobFaultsTest, CancellingAtAnyStepLeavesNothing) {
  const support::PdfPage page = {.width = 200, .height = 60, .text = "Page"};
  support::PdfBuilder().page(page).page(page).write(sources_ / "a.pdf");
  support::PdfBuilder().page(page).write(sources_ / "b.pdf");
  for (const char* picture : {"c.png", "d.png"}) {
    support::writePng(sources_ / picture, support::gradient(20, 20, PixelLayout::rgb));
  }
  for (const auto& [action, inputs, reports] : cancellationCases) {
    const support::TemporaryFolder results;
    destination_ = results.path();
    for (int step = 0; step <= reports; ++step) {
      EXPECT_EQ(failureWhenCancelled(action, inputs, step), cancelled)
          << action << " at step " << step;
      EXPECT_THAT(results.names(), IsEmpty()) << action << " at step " << step;
    }
    EXPECT_EQ(failureWhenCancelled(action, inputs, reports + 1), "(no failure)") << action;
    EXPECT_THAT(results.names(), Not(IsEmpty())) << action;
  }
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
