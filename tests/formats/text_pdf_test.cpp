#include "formats/text_pdf.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

using namespace std::string_literals;
using support::contentOf;
using support::failureText;
using support::repeated;
using ::testing::HasSubstr;

constexpr const char* tooLong = "The text requires more than 500 pages.";
constexpr int linesOfAPage = 54;  // of DejaVu Sans; a line is 13.97 points high

/// Where a page is not white, in points.
struct Ink {
  int left = 1000;
  int top = 1000;
  int right = 0;
  int bottom = 0;
};

class TextPdfTest : public ::testing::Test {
 protected:
  std::shared_ptr<PdfDocument> pdf(std::string_view text) {
    UniversalFormats::textPDF(text, file_, token_);
    return pdfLibrary().open(file_);
  }
  std::string failure(std::string_view text) {
    return failureText([&] { UniversalFormats::textPDF(text, file_, token_); });
  }
  /// The text of every page, each page as the reader of PDFs gives it.
  std::vector<std::string> texts(std::string_view text) {
    const auto document = pdf(text);
    std::vector<std::string> pages;
    for (int page = 0; page < document->pageCount(); ++page) {
      pages.push_back(document->text(page));
    }
    return pages;
  }
  /// The text without spaces and marks of direction, which readers of PDFs add.
  std::string lettersOf(std::string_view text) {
    std::string read = texts(text).front();
    for (const char* added : {"\u202A", "\u202B", "\u202C", " ", "\n"}) {
      for (std::size_t at = read.find(added); at != std::string::npos; at = read.find(added)) {
        read.erase(at, std::strlen(added));
      }
    }
    return read;
  }
  std::vector<std::uint8_t> picture(std::string_view text) {
    Bitmap bitmap;
    pdf(text)->render(0, 595, 842, bitmap);
    return {bitmap.pixels.begin(), bitmap.pixels.end()};
  }
  Ink ink(std::string_view text) {
    Bitmap bitmap;
    pdf(text)->render(0, 595, 842, bitmap);
    Ink ink;
    for (int y = 0; y < bitmap.height; ++y) {
      for (int x = 0; x < bitmap.width; ++x) {
        const std::size_t pixel =
            static_cast<std::size_t>(y) * bitmap.stride() + static_cast<std::size_t>(x) * 4;
        if (bitmap.pixels[pixel] < 0xF0) {
          ink = {std::min(ink.left, x),
                 std::min(ink.top, y),
                 std::max(ink.right, x),
                 std::max(ink.bottom, y)};
        }
      }
    }
    return ink;
  }

  support::TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "text.pdf";
  CancellationToken token_;
};

std::string without(std::string text, std::string_view dropped) {
  std::erase_if(text, [&](char c) { return dropped.find(c) != std::string_view::npos; });
  return text;
}

const std::tuple<std::string, std::string, std::vector<std::string>> textPdfPagesCases[] = {
    {"empty", "", {""}},
    {"one line", "One line.\n", {"One line."}},
    {"lines", "a\r\nb\rc\u2028d\n\ne", {"a\nb\nc\nd\ne"}},
    {"NUL and other controls", "be\0fore\x07 after"s, {"before after"}},
    {"form feeds", "a\f\fb\f", {"a", "", "b"}},
    {"scripts",
     "Latin àçß ﬁ\nКириллица\nΕλληνικά\n中文字\nかな\n한국어\n",
     {"Latin àçß ﬁ\nКириллица\nΕλληνικά\n中文字\nかな\n한국어"}},
    {"long word", std::string(80, 'M'), {std::string(49, 'M') + "\n" + std::string(31, 'M')}},
};

TEST_F(TextPdfTest, HoldTheText) {
  for (const auto& [label, text, pages] : textPdfPagesCases) {
    EXPECT_EQ(texts(text), pages) << label;
  }
}

TEST_F(TextPdfTest, HasA4PagesThatTellNothingElse) {
  const auto document = pdf("One line.");
  EXPECT_EQ(document->geometry(0).width, 595);
  EXPECT_EQ(document->geometry(0).height, 842);
  const std::string first = contentOf(file_);
  EXPECT_THAT(first, ::testing::Not(HasSubstr("CreationDate")));
  pdf("One line.");
  EXPECT_EQ(contentOf(file_), first);
}

TEST_F(TextPdfTest, StaysInsideTheFrame) {
  const Ink line = ink("\u2588");  // fills its line from edge to edge
  EXPECT_NEAR(line.left, 42, 1);
  EXPECT_NEAR(line.top, 42, 2);
  EXPECT_LT(line.bottom, 60);
  const Ink full = ink(repeated("\u2588", 10'000));
  EXPECT_NEAR(full.left, 42, 1);
  EXPECT_LE(full.right, 553);
  EXPECT_GT(full.right, 540);
  EXPECT_LE(full.bottom, 800);
  EXPECT_GT(full.bottom, 780);
}

TEST_F(TextPdfTest, SetsKnownWordsAsItSetsAWholeLine) {
  // A character without width keeps a line from being put together from its words.
  for (const char* line : {"AVAToffi(fi) “T.” – café,  12.5 ",
                           "well-known and/or (a) ( b) \"c\" 1 - 2; ",
                           "    a--b Łódź!  ",
                           "x"}) {
    const std::string text = repeated(line, 40) + "end";
    EXPECT_EQ(picture(text), picture(text + "\u2060")) << line;
  }
}

TEST_F(TextPdfTest, AlignsRightToLeftParagraphsToTheRight) {
  EXPECT_GT(ink("שלום").left, 500);
  EXPECT_GT(ink("(שלום)\u2028abc").left, 500);
  EXPECT_LT(ink("שלום\nabc").left, 50);
  EXPECT_EQ(lettersOf("שלום עולם"), "שלוםעולם");
  EXPECT_EQ(lettersOf("نص حكيم"), "نصحكيم");
}

TEST_F(TextPdfTest, PaintsEmojiInColor) {
  Bitmap bitmap;
  pdf("😀 👍🏽")->render(0, 595, 842, bitmap);
  int yellow = 0;
  for (std::size_t pixel = 0; pixel < bitmap.pixels.size(); pixel += 4) {
    yellow += bitmap.pixels[pixel + 2] > bitmap.pixels[pixel] + 100 ? 1 : 0;
  }
  EXPECT_GT(yellow, 60);
}

TEST_F(TextPdfTest, TakesUpTo500Pages) {
  const std::string full = repeated("x\n", 500 * linesOfAPage);
  EXPECT_EQ(pdf(full)->pageCount(), 500);
  EXPECT_EQ(failure(full + "y"), tooLong);
  EXPECT_EQ(pdfLibrary().open(file_)->pageCount(), 500);
  EXPECT_EQ(failure(repeated("\f", 501)), tooLong);
}

TEST_F(TextPdfTest, LosesNothingOfALineOfAMillionCharacters) {
  std::string line;
  for (int word = 0; line.size() < 1'000'000; ++word) {
    line += std::to_string(word) + (word % 7 == 0 ? " " : "-word");
  }
  std::string read;
  for (const std::string& page : texts(line)) {
    read += page;
  }
  EXPECT_EQ(without(read, " \n"), without(line, " \n"));
}

TEST_F(TextPdfTest, BreaksALongLineWhereAShortOneBreaks) {
  // Longer than what is laid out at a time, which must not show.
  std::string line;
  for (int word = 0; line.size() < 30'000; ++word) {
    line += "word" + std::to_string(word) + " ";
  }
  const std::vector<std::string> pages = texts(line);
  std::size_t shortest = line.size();
  for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
    end = pages.front().find('\n', start);
    shortest = std::min(shortest, std::min(end, pages.front().size()) - start);
  }
  EXPECT_GT(shortest, 50U);
  EXPECT_LT(pages.size(), 9U);
}

TEST_F(TextPdfTest, BreaksNoLineThatManyCharactersDoNotFill) {
  const int onOneLine = ink("ab").bottom;
  for (const char* narrow : {"\u0301", "\u200B", "\u200D"}) {
    EXPECT_EQ(ink("a" + repeated(narrow, 5'000) + "b").bottom, onOneLine) << narrow;
  }
}

TEST_F(TextPdfTest, StopsWhenCancelled) {
  token_.cancel();
  EXPECT_EQ(failure("x"), "Cancelled. Your source files are unchanged.");
}

TEST_F(TextPdfTest, SaysWhatKeepsItFromWriting) {
  std::filesystem::create_directory(file_);
  token_.cancel();  // comes later
  EXPECT_EQ(failure("x"), "Could not create the PDF.");
}

TEST_F(TextPdfTest, NoticesAFullDisk) {
  file_ = "/dev/full";
  EXPECT_EQ(failure("x"), "Could not write /dev/full: No space left on device.");
  EXPECT_EQ(failure(repeated("x\n", 5000)), "Could not write /dev/full: No space left on device.");
}

}  // namespace
}  // namespace tolvane
