#include "platform/text/text_clusters.h"

#include <memory>
#include <random>
#include <string>
#include <unicode/brkiter.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct CloseText {
  void operator()(UText* text) const { utext_close(text); }
};

/// The library's own finder of clusters, over UTF-8.
class Boundaries {
 public:
  explicit Boundaries(const std::string& text)
      : iterator_(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status_)),
        text_(utext_openUTF8(
            nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status_)) {
    iterator_->setText(text_.get(), status_);
  }

  bool isBoundary(std::size_t position) {
    return iterator_->isBoundary(static_cast<std::int32_t>(position)) != 0;
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  std::unique_ptr<icu::BreakIterator> iterator_;
  std::unique_ptr<UText, CloseText> text_;
};

/// Half ASCII, half of one of the scripts and signs whose characters join others.
std::string randomText(std::mt19937& random) {
  constexpr char ascii[] = {',', '"', '\t', '\n', 'a', '1', ' '};
  constexpr struct {
    UChar32 first;
    UChar32 last;
  } ranges[] = {{0x00A0, 0x00AF},  // soft hyphen, a control character
                {0x0300, 0x036F},  // combining marks
                {0x0600, 0x0605},  // Arabic number signs, prepended
                {0x0900, 0x0DFF},  // Indic scripts
                {0x0E00, 0x0EFF},  // Thai and Lao
                {0x1100, 0x11FF},  // Hangul letters
                {0x200B, 0x200F},  // joiners
                {0xFE00, 0xFE0F},  // variation selectors
                {0x110B0, 0x110CF},
                {0x1F1E6, 0x1F1FF},   // flags
                {0x1F3F0, 0x1F3FF},   // skin tones
                {0xE0020, 0xE007F}};  // tags
  std::uniform_int_distribution<std::size_t> length(1, 12);
  std::string text;
  for (std::size_t left = length(random); left > 0; --left) {
    if (random() % 2 == 0) {
      text += ascii[random() % std::size(ascii)];
      continue;
    }
    const auto& range = ranges[random() % std::size(ranges)];
    icu::UnicodeString(std::uniform_int_distribution(range.first, range.last)(random))
        .toUTF8String(text);
  }
  return text;
}

TEST(TextClusters, AgreeWithTheLibrarysBoundaries) {
  std::mt19937 random(1);
  int joined = 0;
  for (int round = 0; round < 20'000; ++round) {
    const std::string text = randomText(random);
    Boundaries boundaries(text);
    for (std::size_t position = 0; position < text.size(); ++position) {
      if (static_cast<unsigned char>(text[position]) >= 0x80) {
        continue;
      }
      const bool expected = boundaries.isBoundary(position) && boundaries.isBoundary(position + 1);
      joined += expected ? 0 : 1;
      ASSERT_EQ(TextClusters::isAlone(text, position), expected)
          << testing::PrintToString(text) << " at " << position;
    }
  }
  EXPECT_GT(joined, 1000);
}

}  // namespace
}  // namespace tolvane
