#pragma once

#include <string>
#include <string_view>

namespace tolvane::UniversalFormats {

/// Converts SubRip (SRT) or WebVTT subtitles. Cues keep their order and their text as it is;
/// identifiers, numbers, settings, notes and styles are left out.
/// @param target "srt", "vtt", or "txt" for the cues' text alone; any other gives WebVTT without
/// its header.
/// @throws ConversionFailure for an invalid timestamp, a cue that does not end after its start, and
/// a text without cues.
[[nodiscard]] std::string subtitles(std::string_view text, std::string_view target);

}  // namespace tolvane::UniversalFormats
