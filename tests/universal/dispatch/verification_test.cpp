#include "universal/dispatch/verification.h"

#include <ostream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

class VerificationTest : public ::testing::Test {
 protected:
  std::string failure(const fs::path& file) {
    return support::failureText([&] {
      UniversalEngine::verify(file, context_);
      return 0;
    });
  }
  void engine(const std::string& name, const std::vector<std::string>& arguments) {
    toolchain_.run({.name = name, .arguments = arguments, .in = folder_.path(), .timeout = 60},
                   token_);
  }

  support::TemporaryFolder folder_;
  ConversionEngine base_;
  LocalToolchain toolchain_;
  CancellationToken token_;
  JobContext context_ = {base_, toolchain_, token_, folder_.path()};
};

struct BrokenCase {
  const char* name;
  const char* content;
  const char* expected;  // part of the sentence
};

void PrintTo(const BrokenCase& c, std::ostream* out) {
  *out << c.name;
}

class BrokenResultTest : public VerificationTest,
                         public ::testing::WithParamInterface<BrokenCase> {};

TEST_P(BrokenResultTest, IsNoticed) {
  EXPECT_THAT(failure(folder_.write(GetParam().name, GetParam().content)),
              HasSubstr(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds,
    BrokenResultTest,
    ::testing::Values(BrokenCase{"a.pdf", "%PDF-1.4", "This PDF is damaged or unreadable."},
                      BrokenCase{"a.docx", "PK\x03\x04", "unzip"},
                      BrokenCase{"a.XLSX", "text", "unzip"},
                      BrokenCase{"a.mp3", "text", "ffprobe"},
                      BrokenCase{"a.png", "text", "magick"},
                      BrokenCase{"a.zip", "text", "7zz"},
                      BrokenCase{"a.tar.gz", "text", "7zz"},
                      BrokenCase{"a.json", "{\"a\": }", "JSON"},
                      BrokenCase{"a.txt", "anything", "(no failure)"}));

TEST_F(VerificationTest, WholeResultsPassWhateverTheirFolderIsCalled) {
  const fs::path folder = folder_ / "50% [a] %d 'b'\\?*: c";
  fs::create_directory(folder);
  context_.workspace = folder;
  support::PdfBuilder().page({.text = "Page"}).write(folder / "a.pdf");
  support::writePng(folder / "a.png", support::gradient(8, 8, PixelLayout::rgb));
  folder_.write("a.json", "[1, {\"b\": null}]");
  fs::rename(folder_ / "a.json", folder / "a.json");
  engine("zip", {"-q", "a.zip", "tests.txt", "-r", "."});
  for (const char* name : {"a.zip", "a.docx"}) {
    fs::copy_file(folder_ / "a.zip", folder / name);
  }
  engine("ffmpeg", {"-loglevel", "error", "-f", "lavfi", "-i", "sine=duration=0.2", "a.wav"});
  fs::rename(folder_ / "a.wav", folder / "a.wav");
  for (const char* name : {"a.pdf", "a.png", "a.json", "a.zip", "a.docx", "a.wav"}) {
    EXPECT_EQ(failure(folder / name), "(no failure)") << name;
  }
}

}  // namespace
}  // namespace tolvane
