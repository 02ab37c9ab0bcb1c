#include "formats/text_clipping.h"

#include <filesystem>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/platform_error.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using namespace std::string_literals;
using support::TemporaryFolder;

const char* const legacy =
    "This legacy or unsupported text clipping must first be saved as TXT in Finder.";
const char* const noText =
    "No readable text was found in this clipping. Save it as TXT in Finder first.";

/// An entry of "UTI-Data" whose value is bytes.
std::string data(const std::string& type, const std::string& bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string entry = "\"" + type + "\" = <";
  for (const char byte : bytes) {
    entry += digits[static_cast<unsigned char>(byte) >> 4];
    entry += digits[static_cast<unsigned char>(byte) & 0x0F];
  }
  return entry + ">; ";
}

/// An entry whose value is a string.
std::string text(const std::string& type, const std::string& value) {
  return "\"" + type + "\" = \"" + value + "\"; ";
}

const std::string utf8 = "public.utf8-plain-text";
const std::string external16 = "public.utf16-external-plain-text";
const std::string utf16 = "public.utf16-plain-text";
const std::string macRoman = "com.apple.traditional-mac-plain-text";
const std::string richText = "public.rtf";
const std::string rtf = R"({\rtf1 \b rich\par})";

/// What reading the file gives: its text, or the message of the failure in square brackets.
std::string outcome(const std::filesystem::path& file) {
  try {
    return UniversalFormats::clippingText(file);
  } catch (const ConversionFailure& failure) {
    return "[" + failure.errorDescription() + "]";
  }
}

const std::tuple<std::string, std::string, std::string> clippingCases[] = {
    {"UTF-8", data(utf8, "h\xC3\xA9"), "hé"},
    {"UTF-16 is little-endian", data(utf16, "a\0\xE9\0"s), "aé"},
    {"UTF-16 with a mark", data(external16, "\xFE\xFF\0\xE9"s), "é"},
    {"Mac Roman", data(macRoman, "caf\x8E"), "café"},
    {"RTF", data(richText, rtf), "rich\n"},
    {"RTF without text counts", data(richText, "{\\rtf1}"), ""},
    {"text named RTF", data(richText, "caf\xC3\xA9"), "café"},
    {"RTF in a string", text(richText, R"({\\rtf1 rich})"), "rich"},
    {"string named RTF", text(richText, "plain"), "plain"},
    {"string of any type", text(utf16, "as it is"), "as it is"},
    {"empty string counts", text(utf8, "") + data(macRoman, "later"), ""},
    {"UTF-8 before RTF", data(richText, rtf) + data(utf8, "plain"), "plain"},
    {"external UTF-16 before UTF-16", data(utf16, "b\0"s) + data(external16, "a\0"s), "a"},
    {"UTF-16 before Mac Roman", data(macRoman, "mac") + data(utf16, "u\0"s), "u"},
    {"Mac Roman before RTF", data(richText, rtf) + data(macRoman, "mac"), "mac"},
    {"empty bytes fall through", data(utf8, "") + data(richText, rtf), "rich\n"},
    {"malformed UTF-8 falls through", data(utf8, "\xFF") + data(macRoman, "m"), "m"},
    {"mark alone falls through", data(external16, "\xFF\xFE") + data(macRoman, "m"), "m"},
    {"odd UTF-16 falls through", data(utf16, "abc") + data(macRoman, "m"), "m"},
    {"list falls through", "\"" + utf8 + "\" = (a); " + data(macRoman, "m"), "m"},
    {"other types only", data("public.html", "<p>"), "["s + noText + "]"},
    {"nothing", "", "["s + noText + "]"},
    {"nothing readable", data(utf8, "") + data(richText, "\xFF"), "["s + noText + "]"},
};

TEST(ClippingTextTest, TakesTheFirstTypeThatGivesText) {
  for (const auto& [label, entries, expected] : clippingCases) {
    SCOPED_TRACE(label);
    const TemporaryFolder folder;
    const std::string list = "{ \"UTI-Data\" = { " + entries + "}; }";
    EXPECT_EQ(outcome(folder.write("a.textclipping", list)), expected);
  }
}

const std::tuple<std::string, std::string> unsupportedCases[] = {
    {"empty", ""},
    {"plain text", "Dear diary, it is a text."},
    {"no dictionary", "(a, b)"},
    {"no data", "{ a = b; }"},
    {"data that is no dictionary", "{ \"UTI-Data\" = b; }"},
    {"damaged", "bplist00"},
};

TEST(UnsupportedTest, IsRefused) {
  for (const auto& [label, content] : unsupportedCases) {
    SCOPED_TRACE(label);
    const TemporaryFolder folder;
    EXPECT_EQ(outcome(folder.write("a.textclipping", content)), "["s + legacy + "]");
  }
}

TEST(ClippingText, ReadsUpToSixteenMebibytes) {
  const TemporaryFolder folder;
  constexpr std::size_t limit = 16'777'216;
  std::string list = "{ \"UTI-Data\" = { " + text(utf8, "x") + "}; }";
  list.resize(limit, ' ');
  EXPECT_EQ(outcome(folder.write("a.textclipping", list)), "x");
  EXPECT_EQ(outcome(folder.write("b.textclipping", list + " ")), "["s + legacy + "]");
}

TEST(ClippingText, TellsWhatCannotBeReadFromWhatIsNotThere) {
  const TemporaryFolder folder;
  EXPECT_THROW((void)UniversalFormats::clippingText(folder / "gone.textclipping"), PlatformError);
  std::filesystem::create_directory(folder / "folder.textclipping");
  EXPECT_EQ(outcome(folder / "folder.textclipping"), "["s + legacy + "]");
}

}  // namespace
}  // namespace tolvane
