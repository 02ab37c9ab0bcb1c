#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <future>
#include <random>
#include <string>
#include <thread>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"
#include "engine/rendering.h"
#include "platform/files/file_system.h"
#include "platform/images/image_decoder.h"
#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"
#include "universal/documents/pdf_table.h"
#include "universal/documents/pdf_text.h"
#include "universal/documents/recognition.h"

/// Fonts and word lists keep memory of their own until the process ends.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT: the sanitizer gives the name
  return "leak:libfontconfig\nleak:libtesseract";
}

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using support::PdfBuilder;
using ::testing::HasSubstr;

constexpr const char* nothingRecognized = "No text was recognized. Try a clearer image.";
constexpr const char* noFailure = "(no failure)";
constexpr const char* nothingFound = "No text could be extracted or recognized.";

class PdfReadingTest : public support::UniversalFixture {
 protected:
  /// A page of text as a scanner sees it: a grey picture with noise.
  Bitmap scanned(const std::string& text) {
    const auto page = pdfLibrary().open(PdfBuilder().page({.text = text}).write(folder_ / "s.pdf"));
    Bitmap bitmap;
    render(*page, 0, 1.5, bitmap);
    std::mt19937 random(1);
    for (std::uint8_t& value : bitmap.pixels) {
      const int noisy = (value * 200 / 255) + static_cast<int>(random() % 48);
      value = static_cast<std::uint8_t>(std::min(noisy, 255));
    }
    return bitmap;
  }

  fs::path pdfOf(const std::vector<Bitmap>& pictures) {
    const auto composer = pdfLibrary().compose();
    for (const Bitmap& picture : pictures) {
      composer->append(picture);
    }
    fs::path file = folder_ / "scan.pdf";
    FileSystem::writeAtomically(file, composer->serialise());
    return file;
  }

  std::string textOf(const fs::path& file, Ocr ocr) { return pdfText(file, ocr, withEngines()); }
};

TEST_F(PdfReadingTest, JoinsTheTrimmedTextsOfThePages) {
  const fs::path file = PdfBuilder()
                            .page({.text = "One\nTwo"})
                            .page({.drawing = "0 0 9 9 re f"})
                            .page({.text = "  Three  "})
                            .write(folder_ / "a.pdf");
  EXPECT_EQ(textOf(file, Ocr::off), "One\nTwo\n\nThree");
}

TEST_F(PdfReadingTest, RecognizesTheScannedPagesOfAMixedDocument) {
  const auto composer = pdfLibrary().compose();
  composer->append(
      pdfLibrary().open(PdfBuilder().page({.text = "Cover"}).write(folder_ / "c.pdf")), 0, {});
  composer->append(scanned("Quarterly report\nTotal 1482 EUR"));
  FileSystem::writeAtomically(folder_ / "mixed.pdf", composer->serialise());

  EXPECT_EQ(textOf(folder_ / "mixed.pdf", Ocr::off), "Cover");
  EXPECT_EQ(textOf(folder_ / "mixed.pdf", Ocr::on), "Cover\n\nQuarterly report\nTotal 1482 EUR");
  EXPECT_FALSE(fs::exists(workspace() / "ocr-0.png"));
  // 918 x 1188 points fit into 1800 x 2400 pixels; the file gives the same text.
  const auto header = imageDecoder().probe(workspace() / "ocr-1.png");
  ASSERT_TRUE(header);
  EXPECT_EQ(std::pair(header->width, header->height), std::pair(1800, 2329));
  EXPECT_EQ(recognize(workspace() / "ocr-1.png", token_), "Quarterly report\nTotal 1482 EUR");
}

TEST_F(PdfReadingTest, EndsWithThePageOnWhichNothingIsRecognized) {
  const Bitmap blank{300, 400, PixelLayout::grey, Bytes(120'000, 255)};
  const fs::path file = pdfOf({scanned("Readable words"), blank});
  EXPECT_EQ(failureText([&] { return textOf(file, Ocr::on); }), nothingRecognized);
  EXPECT_EQ(failureText([&] { return textOf(file, Ocr::off); }), nothingFound);
}

TEST_F(PdfReadingTest, PassesOverPagesThatCannotBePainted) {
  const fs::path file =
      PdfBuilder().page({.text = "Text"}).page({.mediaBox = "[0 0 0 0]"}).write(folder_ / "a.pdf");
  EXPECT_EQ(textOf(file, Ocr::on), "Text");
}

TEST_F(PdfReadingTest, RefusesWhatDoesNotOpen) {
  const fs::path locked =
      PdfBuilder().page({.text = "Text"}).writeLocked(folder_ / "locked.pdf", "secret");
  const std::string sentence =
      "Unlock this password-protected PDF in Preview and save a copy first.";
  EXPECT_EQ(failureText([&] { return textOf(locked, Ocr::on); }), sentence);
  EXPECT_EQ(failureText([&] { return pdfTable(locked, withEngines()); }), sentence);
}

TEST_F(PdfReadingTest, StopsWhenCancelled) {
  const fs::path file = PdfBuilder().page({.text = "Text"}).write(folder_ / "a.pdf");
  const Bitmap picture = scanned("Text");
  token_.cancel();
  const auto cancels = [](const auto& action) {
    try {
      (void)action();
    } catch (const ConversionFailure& failure) {
      return failure.isCancelled();
    }
    return false;
  };
  EXPECT_TRUE(cancels([&] { return textOf(file, Ocr::on); }));
  EXPECT_TRUE(cancels([&] { return pdfTable(file, withEngines()); }));
  EXPECT_TRUE(cancels([&] { return recognize(picture, token_); }));
  EXPECT_TRUE(cancels([&] { return recognize(file, token_); }));
}

TEST_F(PdfReadingTest, StopsInTheMiddleOfAPage) {
  std::string dense;
  for (int line = 0; line < 30; ++line) {
    dense += fmt::format("BT /F1 9 Tf 40 {} Td ({}) Tj ET\n",
                         780 - 12 * line,
                         "the quick brown fox jumps over the lazy dog and many other animals, too");
  }
  const fs::path file = PdfBuilder().page({.drawing = dense}).write(folder_ / "dense.pdf");
  Bitmap picture;
  render(*pdfLibrary().open(file), 0, 2, picture);
  (void)recognize(picture, token_);  // starts the engine
  const auto secondsOf = [&] {
    const auto start = std::chrono::steady_clock::now();
    const std::string failure = failureText([&] { return recognize(picture, token_); });
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(failure, token_.isCancelled() ? ConversionFailure::cancelled().what() : noFailure);
    return time.count();
  };
  const double complete = secondsOf();
  const auto cancelling = std::async(std::launch::async, [&] {
    std::this_thread::sleep_for(std::chrono::duration<double>(complete / 8));
    token_.cancel();
  });
  EXPECT_LT(secondsOf(), complete / 2);
}

TEST_F(PdfReadingTest, RecognizesPictureFiles) {
  support::writeJpeg(folder_ / "scan.jpg", scanned("The quick brown fox\njumps over the lazy dog"));
  EXPECT_EQ(recognize(folder_ / "scan.jpg", token_),
            "The quick brown fox\njumps over the lazy dog");
  EXPECT_THAT(failureText([&] { return recognize(folder_.write("a.png", "no picture"), token_); }),
              HasSubstr("no image"));
}

/// One cell of a table, in Helvetica 10.
std::string cell(double x, double y, const std::string& text) {
  return fmt::format("BT /F1 10 Tf {} {} Td ({}) Tj ET\n", x, y, text);
}

TEST_F(PdfReadingTest, RebuildsARuledTableOf40Rows) {
  Table expected;
  std::string drawing = cell(40, 770, "Stock of the northern warehouse at the end of the year");
  for (int number = 1; number <= 40; ++number) {
    const double y = 760 - 18 * number;
    TableRow row = {fmt::format("A{:03}", number),
                    fmt::format("Crate of screws, size {}", number),
                    fmt::format("{},{:03}.50", number * 7 % 10 + 1, number * 37)};
    drawing += fmt::format("36 {} 500 18 re S ", y - 5);
    drawing += cell(40, y, row[0]) + cell(120, y, row[1]);
    drawing += cell(420 + number % 5, y, row[2]);  // numbers are aligned less strictly
    expected.push_back(std::move(row));
  }
  const fs::path file = PdfBuilder()
                            .page({.drawing = "110 20 0 740 re S 410 20 0 740 re S " + drawing})
                            .write(folder_ / "table.pdf");
  EXPECT_EQ(pdfTable(file, withEngines()), expected);
}

}  // namespace

}  // namespace tolvane::UniversalEngine
