#include "platform/text/visual_text.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unicode/ubidi.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace tolvane::VisualText {

namespace {

struct BidiClose {
  void operator()(UBiDi* bidi) const { ubidi_close(bidi); }
};

/// Hebrew, the first script that is written from right to left, begins at U+0590: no byte below
/// this one begins a character of such a script.
constexpr std::uint8_t firstLead = 0xD6;

bool mayHaveRightToLeft(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char byte) {
    return static_cast<std::uint8_t>(byte) >= firstLead;
  });
}

struct Letters {
  int leftToRight = 0;
  int rightToLeft = 0;
};

Letters lettersOf(const icu::UnicodeString& text) {
  Letters letters;
  for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
    const UChar32 character = text.char32At(at);
    letters.leftToRight += u_charDirection(character) == U_LEFT_TO_RIGHT ? 1 : 0;
    letters.rightToLeft += isRightToLeft(static_cast<char32_t>(character)) ? 1 : 0;
  }
  return letters;
}

icu::UnicodeString unitsOf(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

/// Empty when the library refuses.
icu::UnicodeString reordered(const icu::UnicodeString& visual, UBiDiLevel level) {
  const std::unique_ptr<UBiDi, BidiClose> bidi(ubidi_open());
  ubidi_setReorderingMode(bidi.get(), UBIDI_REORDER_INVERSE_LIKE_DIRECT);
  UErrorCode error = U_ZERO_ERROR;
  ubidi_setPara(bidi.get(), visual.getBuffer(), visual.length(), level, nullptr, &error);
  icu::UnicodeString logical;
  char16_t* const buffer = logical.getBuffer(visual.length() + 1);
  const std::int32_t length = ubidi_writeReordered(
      bidi.get(), buffer, visual.length() + 1, UBIDI_KEEP_BASE_COMBINING, &error);
  logical.releaseBuffer(U_SUCCESS(error) != 0 ? length : 0);
  return logical;
}

}  // namespace

bool isRightToLeft(char32_t letter) {
  constexpr char32_t firstLetter = 0x590;
  if (letter < firstLetter) {
    return false;
  }
  const UCharDirection direction = u_charDirection(static_cast<UChar32>(letter));
  return direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC;
}

bool isRightToLeft(std::string_view text) {
  if (!mayHaveRightToLeft(text)) {
    return false;
  }
  const Letters letters = lettersOf(unitsOf(text));
  return letters.rightToLeft > letters.leftToRight;
}

std::string logicalOrder(std::string visual) {
  if (!mayHaveRightToLeft(visual)) {
    return visual;
  }
  const icu::UnicodeString units = unitsOf(visual);
  const Letters letters = lettersOf(units);
  std::string logical;
  if (letters.rightToLeft > 0) {
    reordered(units, letters.rightToLeft > letters.leftToRight ? 1 : 0).toUTF8String(logical);
  }
  return logical.empty() ? visual : logical;
}

}  // namespace tolvane::VisualText
