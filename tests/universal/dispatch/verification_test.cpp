#include "universal/dispatch/verification.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

class VerificationTest : public support::UniversalFixture {
 protected:
  std::string failure(const fs::path& file) {
    return support::failureText([&] { UniversalEngine::verify(file, context_); });
  }
  void engine(const std::string& name, const std::string& arguments) {
    withEngines().in(folder_.path()).run(name, support::words(arguments), 60);
  }

  JobContext context_ = withEngines();
};

const struct {
  std::string name, content;
  const char* expected;  // part of the sentence
} brokenResultCases[] = {
    {"a.pdf", "%PDF-1.4", "This PDF is damaged or unreadable."},
    {"a.docx", "PK\x03\x04", "unzip"},
    {"a.XLSX", "text", "unzip"},
    {"a.mp3", "text", "ffprobe"},
    {"a.png", "text", "magick"},
    {"a.zip", "text", "7zz"},
    {"a.tar.gz", "text", "7zz"},
    {"a.json", "{\"a\": }", "JSON"},
    {"a.txt", "anything", "(no failure)"},
};

TEST_F(VerificationTest, IsNoticed) {
  for (const auto& c : brokenResultCases) {
    EXPECT_THAT(failure(folder_.write(c.name, c.content)), HasSubstr(c.expected)) << c.name;
  }
}

TEST_F(VerificationTest, WholeResultsPassWhateverTheirFolderIsCalled) {
  const fs::path folder = folder_ / "50% [a] %d 'b'\\?*: c";
  fs::create_directory(folder);
  context_.workspace = folder;
  support::PdfBuilder().page({.text = "Page"}).write(folder / "a.pdf");
  support::writePng(folder / "a.png", support::gradient(8, 8, PixelLayout::rgb));
  folder_.write("a.json", "[1, {\"b\": null}]");
  fs::rename(folder_ / "a.json", folder / "a.json");
  engine("zip", "-q a.zip tests.txt -r .");
  for (const char* name : {"a.zip", "a.docx"}) {
    fs::copy_file(folder_ / "a.zip", folder / name);
  }
  engine("ffmpeg", "-loglevel error -f lavfi -i sine=duration=0.2 a.wav");
  fs::rename(folder_ / "a.wav", folder / "a.wav");
  for (const char* name : {"a.pdf", "a.png", "a.json", "a.zip", "a.docx", "a.wav"}) {
    EXPECT_EQ(failure(folder / name), "(no failure)") << name;
  }
}

}  // namespace
}  // namespace tolvane
