#include "platform/text/utf16_joiner.h"

namespace tolvane {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

char continuation(char32_t codePoint, unsigned shift) {
  return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
}

}  // namespace

void appendUtf8(char32_t codePoint, std::string& text) {
  if (codePoint > 0x10FFFF || isHighSurrogate(codePoint) || isLowSurrogate(codePoint)) {
    codePoint = replacement;
  }
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += static_cast<char>(0xC0 | (codePoint >> 6));
    text += continuation(codePoint, 0);
  } else if (codePoint < 0x10000) {
    text += static_cast<char>(0xE0 | (codePoint >> 12));
    text += continuation(codePoint, 6);
    text += continuation(codePoint, 0);
  } else {
    text += static_cast<char>(0xF0 | (codePoint >> 18));
    text += continuation(codePoint, 12);
    text += continuation(codePoint, 6);
    text += continuation(codePoint, 0);
  }
}

void Utf16Joiner::append(char16_t unit) {
  if (high_ != 0 && isLowSurrogate(unit)) {
    const char32_t upper = static_cast<char32_t>(high_ - 0xD800) << 10;
    appendUtf8(0x10000 + upper + static_cast<char32_t>(unit - 0xDC00), text_);
    high_ = 0;
    return;
  }
  finish();
  if (isHighSurrogate(unit)) {
    high_ = unit;
  } else if (isLowSurrogate(unit)) {
    replace();
  } else {
    appendUtf8(unit, text_);
  }
}

void Utf16Joiner::finish() {
  if (high_ != 0) {
    high_ = 0;
    replace();
  }
}

void Utf16Joiner::replace() {
  hasMetLoneSurrogate_ = true;
  appendUtf8(replacement, text_);
}

}  // namespace tolvane
