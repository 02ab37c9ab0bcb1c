#include <filesystem>
#include <future>
#include <ostream>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/eventually.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/sample_fixture.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::contentOf;
using ::testing::ElementsAre;

struct CancellationCase {
  std::string capability, input;
  std::string process;  ///< as the kernel calls it: at most 15 letters
};

void PrintTo(const CancellationCase& c, std::ostream* out) {
  *out << c.process;
}

/// 24 MB that no engine can compress: what repeats is too far apart.
std::string noise() {
  constexpr std::size_t blockSize = 1'000'000;
  std::string block(blockSize, '\0');
  std::mt19937 random;
  for (char& byte : block) {
    byte = static_cast<char>(random());
  }
  return support::repeated(block, 24);
}

/// Inputs that keep their engines busy for a second or more.
class CancellationTest : public SampleFixture,
                         public ::testing::WithParamInterface<CancellationCase> {
 protected:
  void makeLong(const std::string& name) {
    const std::string extension = FileNames::extension(name);
    if (extension == "md") {
      std::string text;
      for (int paragraph = 0; paragraph < 40'000; ++paragraph) {
        text +=
            "Some *words* and [a link](http://example.org/" + std::to_string(paragraph) + ").\n\n";
      }
      sources_.write(name, text);
    } else if (extension == "wav") {
      make("ffmpeg",
           support::words("-loglevel error -f lavfi -i sine=duration=3600:sample_rate=8000 " +
                          name));
    } else if (extension == "png") {
      support::writePng(sources_ / name, support::gradient(1200, 1200, PixelLayout::rgb));
    } else if (extension == "tar") {
      sources_.write("noise", noise());
      make("tar", {"-cf", name, "noise"});
    } else if (extension == "pdf") {
      support::PdfBuilder().page({.drawing = noise()}).write(sources_ / name);
    } else {
      makeSample(name);
    }
  }

  /// Whether the engine works for this test, whose folder its command line names.
  [[nodiscard]] bool isAtWork(const std::string& process) const {
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
      if (contentOf(entry.path() / "comm") == process + "\n" &&
          contentOf(entry.path() / "cmdline").find(results_.path()) != std::string::npos) {
        return true;
      }
    }
    return false;
  }
};

TEST_P(CancellationTest, LeavesNothingOfAnEngineAtWork) {
  const auto& [capability, input, process] = GetParam();
  makeLong(input);
  results_.write("kept.txt", "kept");
  const Names before = sources_.names();
  const std::string content = contentOf(sources_ / input);
  const auto cancelling = std::async(std::launch::async, [this, &process = process] {
    EXPECT_TRUE(support::eventually([&] { return isAtWork(process); }));
    token_.cancel();
  });
  EXPECT_EQ(failureOf(capability, {input}), "Cancelled. Your source files are unchanged.");
  EXPECT_FALSE(isAtWork(process));
  EXPECT_THAT(results_.names(), ElementsAre("kept.txt"));
  EXPECT_EQ(sources_.names(), before);
  EXPECT_TRUE(contentOf(sources_ / input) == content);
}

const CancellationCase engines[] = {
    {"convert.html", "long.md", "pandoc"},
    {"convert.pdf", "letter.rtf", "soffice.bin"},
    {"convert.opus", "long.wav", "ffmpeg"},
    {"convert.avif", "long.png", "convert-im6.q16"},
    {"convert.zip", "long.tar", "7zz"},
    {"tool.compress", "long.pdf", "qpdf"},
};

INSTANTIATE_TEST_SUITE_P(Engines, CancellationTest, ::testing::ValuesIn(engines));

}  // namespace
}  // namespace tolvane
