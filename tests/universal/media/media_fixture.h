#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/json/value_json.h"
#include "tests/support/universal_fixture.h"
#include "universal/media/media_probe.h"

namespace tolvane::support {

/// Clips that the engine itself makes, and a job that works on them.
class MediaFixture : public UniversalFixture {
 protected:
  /// Makes a file in the folder of inputs. @param arguments as one line, without quotes.
  FileInfo make(const std::string& name, const std::string& arguments) const {
    std::vector<std::string> all = words("-v error " + arguments);
    all.push_back("file:" + name);
    context_.in(sources_.path()).run("ffmpeg", all, 60);
    return info(name);
  }

  /// A second and more of moving colours and two channels of a tone, with tags.
  FileInfo film(const std::string& name = "film.mp4", const std::string& seconds = "1.2") const {
    return make(name,
                "-f lavfi -i testsrc=size=160x120:rate=25:duration=" + seconds +
                    " -f lavfi -i sine=duration=" + seconds +
                    " -ac 2 -pix_fmt yuv420p -metadata title=Secret -metadata artist=Me");
  }

  FileInfo silentFilm() const {
    return make("silent.mp4", "-f lavfi -i testsrc=size=160x120:rate=10:duration=1");
  }

  FileInfo song() const {
    return make("song.mp3", "-f lavfi -i sine=duration=1.2 -metadata title=Secret");
  }

  [[nodiscard]] FileInfo info(const std::string& name) const {
    const std::string extension = std::filesystem::path(name).extension();
    const bool isSong = extension == ".mp3" || extension == ".m4a";
    return {sources_ / name, isSong ? FileKind::audio : FileKind::video, ""};
  }

  struct Content {
    std::string streams;  ///< "h264 160x120, aac 2"
    double duration = 0;  ///< seconds; 0 for a picture
  };

  Content described(const std::filesystem::path& file) const {
    // Without the limits of a job's input: results may be pictures, too.
    const Bytes printed =
        context_.run("ffprobe",
                     {"-v", "error", "-show_format", "-show_streams", "-of", "json", file.string()},
                     60,
                     {file});
    const Value probed = ValueJson::parse(asText(printed));
    Content content;
    for (const Value& stream : *probed["streams"].list()) {
      content.streams += (content.streams.empty() ? "" : ", ") + *stream["codec_name"].text() + " ";
      content.streams += *stream["codec_type"].text() == "video"
                             ? std::to_string(stream["width"].integer().value_or(0)) + "x" +
                                   std::to_string(stream["height"].integer().value_or(0))
                             : std::to_string(stream["channels"].integer().value_or(0));
    }
    const std::string* duration = probed["format"]["duration"].text();
    content.duration = duration != nullptr ? std::stod(*duration) : 0;
    return content;
  }

  TemporaryFolder sources_;
  JobContext context_ = withEngines();
};

}  // namespace tolvane::support
