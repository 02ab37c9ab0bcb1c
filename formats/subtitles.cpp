#include "formats/subtitles.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/decimal_text.h"
#include "engine/primitives/split_text.h"

namespace tolvane::UniversalFormats {

namespace {

constexpr std::string_view arrow = " --> ";
constexpr std::string_view blankLine = "\n\n";

struct Timestamp {
  std::string text;  // HH:MM:SS.mmm
  double seconds = 0;
};

struct Cue {
  std::string timing;
  std::string_view text;  // its lines as they are, LF between them; in the text that was read
};

/// Every line end becomes one LF.
std::string withLineFeeds(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\r'), text.size());
    result += text.substr(0, end);
    text.remove_prefix(end);
    if (!text.empty()) {
      result += '\n';
      text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    }
  }
  return result;
}

std::string_view firstWord(std::string_view text) {
  constexpr std::string_view space = " \t";
  text.remove_prefix(std::min(text.find_first_not_of(space), text.size()));
  return text.substr(0, text.find_first_of(space));
}

/// @return nullopt unless the text is [hours:]minutes:seconds.
std::optional<Timestamp> parseTimestamp(std::string_view text) {
  std::string time(firstWord(text));
  std::replace(time.begin(), time.end(), ',', '.');
  std::vector<std::string_view> pieces = split(time, ":");
  std::erase(pieces, std::string_view());
  if (pieces.size() != 2 && pieces.size() != 3) {
    return std::nullopt;
  }
  const std::optional<double> seconds = DecimalText::parse(pieces.back());
  const std::optional<std::int64_t> minutes = DecimalText::parseWhole(pieces[pieces.size() - 2]);
  const std::optional<std::int64_t> hours =
      DecimalText::parseWhole(pieces.size() == 3 ? pieces[0] : "0");
  const bool isValid = seconds && *seconds >= 0 && *seconds < 60 && minutes && *minutes >= 0 &&
                       *minutes < 60 && hours && *hours >= 0;
  if (!isValid) {
    return std::nullopt;
  }
  return Timestamp{
      fmt::format("{:02}:{:02}:{:06.3f}", *hours, *minutes, *seconds),
      static_cast<double>(*hours) * 3600 + static_cast<double>(*minutes * 60) + *seconds};
}

Timestamp timestamp(std::string_view text) {
  std::optional<Timestamp> result = parseTimestamp(text);
  if (!result) {
    throw ConversionFailure::message("A subtitle cue has an invalid timestamp.");
  }
  return *result;
}

/// @return nullopt for a block that is no cue or has no text.
std::optional<Cue> readCue(std::string_view block) {
  const std::size_t found = block.find(arrow);
  if (found == std::string_view::npos) {
    return std::nullopt;
  }
  // Only the last block has a line end at its end: that of its last line, not one more line.
  if (block.ends_with('\n')) {
    block.remove_suffix(1);
  }
  block.remove_prefix(block.substr(0, found).rfind('\n') + 1);
  const std::size_t lineEnd = block.find('\n');
  const std::vector<std::string_view> times = split(block.substr(0, lineEnd), arrow);
  if (times.size() != 2) {
    return std::nullopt;
  }
  const Timestamp start = timestamp(times[0]);
  const Timestamp end = timestamp(times[1]);
  if (end.seconds <= start.seconds) {
    throw ConversionFailure::message("Subtitle cue end must follow its start.");
  }
  if (lineEnd == std::string_view::npos) {
    return std::nullopt;
  }
  return Cue{start.text + std::string(arrow) + end.text, block.substr(lineEnd + 1)};
}

/// The cues refer to `text`, whose line ends are LF.
std::vector<Cue> readCues(std::string_view text) {
  std::vector<Cue> cues;
  forEachPiece(text, blankLine, [&](std::string_view block) {
    if (std::optional<Cue> cue = readCue(block)) {
      cues.push_back(std::move(*cue));
    }
  });
  if (cues.empty()) {
    throw ConversionFailure::message("No valid subtitle cues were found.");
  }
  return cues;
}

std::string textAlone(const std::vector<Cue>& cues) {
  std::string text;
  for (const Cue& cue : cues) {
    text.append(cue.text).append("\n");
  }
  return text;
}

}  // namespace

std::string subtitles(std::string_view text, std::string_view target) {
  const std::string source = withLineFeeds(text);
  std::vector<Cue> cues = readCues(source);
  if (target == "txt") {
    return textAlone(cues);
  }
  const bool isNumbered = target == "srt";
  std::string result = target == "vtt" ? "WEBVTT\n\n" : "";
  for (std::size_t index = 0; index < cues.size(); ++index) {
    Cue& cue = cues[index];
    if (isNumbered) {
      std::replace(cue.timing.begin(), cue.timing.end(), '.', ',');
      result += std::to_string(index + 1) + "\n";
    }
    result.append(cue.timing).append("\n").append(cue.text);
    result += index + 1 < cues.size() ? blankLine : "\n";
  }
  return result;
}

}  // namespace tolvane::UniversalFormats
