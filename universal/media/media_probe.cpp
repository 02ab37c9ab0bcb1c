#include "universal/media/media_probe.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "engine/json/value_json.h"

namespace tolvane::UniversalEngine {

namespace {

constexpr double probeTimeout = 30;  // seconds

/// Both outputs of the engine stand in one text: what it remarks on a damaged stream comes before
/// the JSON, whose first and outermost bracket is alone on its line.
std::string_view withoutRemarks(std::string_view printed) {
  const std::size_t remarksEnd = printed.find("\n{\n");
  return remarksEnd == std::string_view::npos ? printed : printed.substr(remarksEnd + 1);
}

const Value::List& streams(const Value::Map& probed) {
  static const Value::List none;
  const Value::List* list = valueAt(probed, "streams").list();
  const auto isMap = [](const Value& stream) { return stream.map() != nullptr; };
  return list != nullptr && std::all_of(list->begin(), list->end(), isMap) ? *list : none;
}

/// The engine turns by the display matrix only; a tag "rotate" without one has no effect.
double rotationOf(const Value& video) {
  if (const Value::List* entries = video["side_data_list"].list()) {
    for (const Value& entry : *entries) {
      if (const auto degrees = entry["rotation"].number()) {
        return *degrees;
      }
    }
  }
  return 0;
}

/// Other angles than quarter turns turn the picture within a frame that stays as it is.
bool liesOnItsSide(const Value& video) {
  constexpr double quarterTurn = 90;
  constexpr double halfTurn = 180;
  constexpr double tolerance = 1;  // the engine's own
  const double rest = std::abs(std::remainder(rotationOf(video), halfTurn));
  return quarterTurn - rest < tolerance;
}

}  // namespace

Arguments allowedSources() {
  return {
      "-protocol_whitelist",
      "file,pipe",
      "-format_whitelist",
      "aac,ac3,aiff,amr,ape,asf,au,avi,caf,eac3,flac,flv,gif,loas,m4v,matroska,mov,mp3,mpeg,mpegts,"
      "ogg,tta,w64,wav,wv"};
}

Value::Map probe(const std::filesystem::path& url, const JobContext& context) {
  Arguments arguments = {"-v", "error"};
  const Arguments sources = allowedSources();
  arguments.insert(arguments.end(), sources.begin(), sources.end());
  arguments.insert(arguments.end(), {"-show_format", "-show_streams", "-of", "json", url.string()});
  const Bytes printed = context.run("ffprobe", std::move(arguments), probeTimeout, {url});
  const Value probed = ValueJson::parse(withoutRemarks(asText(printed)));
  return probed.map() != nullptr ? *probed.map() : Value::Map();
}

const Value& firstStream(const Value::Map& probed, std::string_view type) {
  static const Value none;
  const Value::List& all = streams(probed);
  const auto found = std::find_if(all.begin(), all.end(), [type](const Value& stream) {
    const std::string* own = stream["codec_type"].text();
    return own != nullptr && *own == type;
  });
  return found != all.end() ? *found : none;
}

bool hasAudio(const Value::Map& probed) {
  return !firstStream(probed, "audio").isNull();
}

FrameSides frameSides(const Value::Map& probed) {
  const Value& video = firstStream(probed, "video");
  FrameSides sides = {video["width"].integer(), video["height"].integer()};
  if (liesOnItsSide(video)) {
    std::swap(sides.width, sides.height);
  }
  return sides;
}

std::optional<FrameSize> frameSize(const Value::Map& probed) {
  const auto [width, height] = frameSides(probed);
  return width && height ? std::optional(FrameSize{*width, *height}) : std::nullopt;
}

}  // namespace tolvane::UniversalEngine
