#include "platform/text/text_encoding.h"

#include <optional>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "platform/text/code_page.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

using namespace std::string_literals;

const std::tuple<std::string, std::string, bool> utf8Cases[] = {
    {"empty", "", true},
    {"NUL", "\0"s, true},
    {"last of two bytes", "\xDF\xBF", true},
    {"first of three bytes", "\xE0\xA0\x80", true},
    {"before the surrogates", "\xED\x9F\xBF", true},
    {"after the surrogates", "\xEE\x80\x80", true},
    {"first of four bytes", "\xF0\x90\x80\x80", true},
    {"last code point", "\xF4\x8F\xBF\xBF", true},
    {"byte-order mark", "\xEF\xBB\xBF", true},
    {"lone continuation", "\x80", false},
    {"overlong two", "\xC1\xBF", false},
    {"overlong three", "\xE0\x9F\xBF", false},
    {"overlong four", "\xF0\x8F\xBF\xBF", false},
    {"high surrogate", "\xED\xA0\x80", false},
    {"low surrogate", "\xED\xBF\xBF", false},
    {"beyond the last", "\xF4\x90\x80\x80", false},
    {"five bytes", "\xF8\x88\x80\x80\x80", false},
    {"cut after one", "\xE2", false},
    {"cut after two", "\xE2\x82", false},
    {"cut after three", "\xF0\x9F\x98", false},
    {"wrong third", "\xE2\x82x", false},
    {"wrong fourth", "\xF0\x9F\x98x", false},
    {"Latin-1", "caf\xE9", false},
};

/// At every place of a longer text: blocks of ASCII are passed over in one step.
TEST(Utf8Test, IsJudgedTheSameAnywhere) {
  for (const auto& [label, bytes, isValid] : utf8Cases) {
    SCOPED_TRACE(label);
    for (std::size_t before = 0; before < 70; ++before) {
      const std::string text = std::string(before, 'a') + bytes;
      const std::string enclosed = text + std::string(40, 'b');
      EXPECT_EQ(TextEncoding::isUtf8(asBytes(text)), isValid) << before;
      EXPECT_EQ(TextEncoding::isUtf8(asBytes(enclosed)), isValid) << before;
    }
    EXPECT_EQ(TextEncoding::fromUtf8(asBytes(bytes)),
              isValid ? std::optional(bytes) : std::nullopt);
  }
}

const std::tuple<std::string, std::string, std::optional<std::string>> utf16Cases[] = {
    {"without a mark", "a\0\xAC\x20"s, "a€"},
    {"little-endian mark", "\xFF\xFE\xE9\0"s, "é"},
    {"big-endian mark", "\xFE\xFF\0\xE9"s, "é"},
    {"mark alone", "\xFF\xFE", ""},
    {"empty", "", ""},
    {"second mark stays", "\xFF\xFE\xFF\xFE", "\uFEFF"},
    {"pair", "\x3D\xD8\0\xDE"s, "😀"},
    {"last code point", "\xFF\xDB\xFF\xDF", "\U0010FFFF"},
    {"odd length", "a\0b"s, std::nullopt},
    {"high alone at the end", "a\0\x3D\xD8"s, std::nullopt},
    {"high before text", "\x3D\xD8z\0"s, std::nullopt},
    {"low alone", "\0\xDE"s, std::nullopt},
    {"pair in the wrong order", "\0\xDE\x3D\xD8"s, std::nullopt},
};

TEST(Utf16Test, IsStrict) {
  for (const auto& [label, bytes, expected] : utf16Cases) {
    EXPECT_EQ(TextEncoding::fromUtf16(asBytes(bytes)), expected) << label;
  }
}

TEST(MacRoman, HasACharacterForEveryByte) {
  EXPECT_EQ(TextEncoding::fromMacRoman(asBytes("caf\x8E\n\xD0\xDB\xC9")), "café\n–€…");
  for (int byte = 0; byte < 256; ++byte) {
    const std::string only(1, static_cast<char>(byte));
    const std::string text = TextEncoding::fromMacRoman(asBytes(only));
    EXPECT_FALSE(text.empty()) << byte;
    EXPECT_NE(text, "\uFFFD") << byte;
  }
}

const std::tuple<int, std::string, std::string> codePageCases[] = {
    {1252, "\x80 caf\xE9", "€ café"},
    {1250, "\xB9", "ą"},
    {1251, "\xCF\xF0", "Пр"},
    {1255, "\xE0", "א"},
    {874, "\xA1", "ก"},
    {437, "\x82", "é"},
    {850, "\xB5", "Á"},
    {932, "\x83\x65\\", "テ\\"},
    {936, "\xD6\xD0", "中"},
    {949, "\xB0\xA1", "가"},
    {950, "\xA4\xA4", "中"},
    {10000, "\x8E", "é"},
    {10007, "\x80", "А"},
    {65001, "\xC3\xA9", "é"},
    {4711, "\xE9", "é"},
    {-1, "\xE9", "é"},
    {932, "\x83", "\uFFFD"},
    {65001, "a\xFFz", "a\uFFFDz"},
};

TEST(CodePageTest, DecodesAndReplacesWhatIsMalformed) {
  for (const auto& [number, bytes, expected] : codePageCases) {
    SCOPED_TRACE(number);
    const CodePage codePage(number);
    std::string text = "before ";
    codePage.append(asBytes(bytes), text);
    EXPECT_EQ(text, "before " + std::string(expected));
  }
}

TEST(CodePage, DecodesRunsLongerThanItsBuffer) {
  std::string text;
  CodePage(932).append(asBytes(support::repeated("\x83\x65", 3000)), text);
  EXPECT_EQ(text, support::repeated("テ", 3000));
}

}  // namespace
}  // namespace tolvane
