#include "formats/subtitles.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

namespace tolvane {
namespace {

using UniversalFormats::subtitles;

const char* const invalid = "A subtitle cue has an invalid timestamp.";
const char* const reversed = "Subtitle cue end must follow its start.";
const char* const none = "No valid subtitle cues were found.";

const std::string twoCues =
    "WEBVTT - a title\n\nNOTE\nnot shown\n\nintro\n00:00:01.000 --> 00:00:02.500\none\n two \n\n"
    "00:03.5 --> 01:00:04.250 align:start\nthree\nfour";

const std::tuple<std::string, std::string, std::string, std::string> subtitlesCases[] = {
    {"SRT with CR LF to VTT",
     "1\r\n00:00:01,000 --> 00:00:02,500\r\nHello\r\n\r\n",
     "vtt",
     "WEBVTT\n\n00:00:01.000 --> 00:00:02.500\nHello\n"},
    {"VTT to SRT",
     twoCues,
     "srt",
     "1\n00:00:01,000 --> 00:00:02,500\none\n two \n\n2\n00:00:03,500 --> 01:00:04,250\nthree\n"
     "four\n"},
    {"to plain text", twoCues, "txt", "one\n two \nthree\nfour\n"},
    {"to anything else",
     "0:1 --> 0:2\rold line ends\r",
     "sub",
     "00:00:01.000 --> 00:00:02.000\nold line ends\n"},
    {"settings",
     "00:01.000 --> 00:02.000 align:start\na",
     "srt",
     "1\n00:00:01,000 --> 00:00:02,000\na\n"},
    {"the text's own dots and commas stay",
     "00:01,0 --> 00:02.0\na.b,c --> d",
     "srt",
     "1\n00:00:01,000 --> 00:00:02,000\na.b,c --> d\n"},
    {"a third line end belongs to the next block",
     "0:1 --> 0:2\na\n\n\n0:3 --> 0:4\nb",
     "txt",
     "a\nb\n"},
    {"a line end after the last cue", "0:1 --> 0:2\na\n\n0:3 --> 0:4\nb\n", "txt", "a\nb\n"},
    {"a last cue without text", "0:1 --> 0:2\na\n\n0:3 --> 0:4\n", "txt", "a\n"},
    {"tabs beside the times", "\t0:1\t --> \t0:2\talign:start\na\tb", "txt", "a\tb\n"},
    {"blocks without text or with two arrows are dropped",
     "0:1 --> 0:2\n\n0:1 --> 0:2 --> 0:3\na\n\n0:5 --> 0:6\nb",
     "srt",
     "1\n00:00:05,000 --> 00:00:06,000\nb\n"},
    {"signs, exponents and spare colons", "+1:+02:5.9e1 --> :100:00::0\na", "txt", "a\n"},
    {"many hours",
     "100:00:00,000 --> 4294967296:59:59,9996\na",
     "srt",
     "1\n100:00:00,000 --> 4294967296:59:60,000\na\n"},
};

TEST(SubtitlesTest, ConvertsTheCues) {
  for (const auto& [label, text, target, expected] : subtitlesCases) {
    EXPECT_EQ(subtitles(text, target), expected) << label;
  }
}

const struct {
  std::string label, text, message;
} subtitlesFailures[] = {
    {"nothing", "", none},
    {"no spaces around the arrow", "00:01-->00:02\na", none},
    {"no text", "00:01 --> 00:02", none},
    {"no text behind a line end", "00:01 --> 00:02\r\n", none},
    {"end before start", "01:00:00,000 --> 00:59:59,500\na", reversed},
    {"end at start", "00:01 --> 0:01.0\na", reversed},
    {"end at start, without text", "00:01 --> 00:01", reversed},
    {"60 minutes", "00:60:00,000 --> 02:00:00,000\na", invalid},
    {"60 seconds", "00:00:60,000 --> 02:00:00,000\na", invalid},
    {"negative minutes", "-1:00 --> 1:00\na", invalid},
    {"negative seconds", "0:-1 --> 1:00\na", invalid},
    {"negative hours", "-1:0:0 --> 1:00\na", invalid},
    {"no number of seconds", "0:nan --> 1:00\na", invalid},
    {"fractions of minutes", "0.5:00 --> 1:00\na", invalid},
    {"two signs", "+-1:00 --> 1:00\na", invalid},
    {"one piece", "12 --> 1:00\na", invalid},
    {"four pieces", "0:0:0:1 --> 1:00\na", invalid},
    {"an empty start", " --> 0:01\na", invalid},
    {"an empty end", "0:01 --> \na", invalid},
    {"hours beyond 64 bits", "9223372036854775808:0:0 --> 1:00\na", invalid},
    {"one bad cue", twoCues + "\n\n0:x --> 1:00\na", invalid},
};

TEST(SubtitlesFailureTest, SaysWhy) {
  for (const auto& c : subtitlesFailures) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(support::failureText([&] { return subtitles(c.text, "vtt"); }), c.message);
  }
}

}  // namespace
}  // namespace tolvane
