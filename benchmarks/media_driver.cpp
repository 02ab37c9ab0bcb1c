// Times the conversion of a clip three ways in turn: bare ffmpeg with the arguments that we give
// it, bare ffprobe before bare ffmpeg, and our operation, which does both, confined.
//
// usage: media_driver ROUNDS FOLDER CLIP TARGET
//          Prints a line a round: milliseconds ffmpeg, ffprobe and ffmpeg, media. FOLDER is
//          emptied before each.

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "benchmarks/timed_run.h"
#include "universal/media/media.h"
#include "universal/media/media_command.h"
#include "universal/media/media_probe.h"

namespace {

namespace fs = std::filesystem;
using namespace tolvane;
using Benchmarks::Words;

Words ffmpegWords(const JobContext& context, const fs::path& clip, const std::string& target) {
  Words words = {context.toolchain.find("ffmpeg").value()};
  const Words prefix = UniversalEngine::mediaPrefix(clip);
  const Words arguments =
      UniversalEngine::mediaCommand({target, {}, {}, UniversalEngine::probe(clip, context)})
          .arguments;
  words.insert(words.end(), prefix.begin(), prefix.end());
  words.insert(words.end(), arguments.begin(), arguments.end());
  words.push_back(context.workspace / ("result." + target));
  return words;
}

int drive(int rounds, const fs::path& folder, const fs::path& clip, const std::string& target) {
  fs::create_directories(folder);
  const ConversionEngine base;
  const LocalToolchain toolchain;
  const CancellationToken token;
  const JobContext context = {base, toolchain, token, folder};
  const Words ffprobe = {toolchain.find("ffprobe").value(),
                         "-v",
                         "error",
                         "-show_format",
                         "-show_streams",
                         "-of",
                         "json",
                         clip};
  const Words ffmpeg = ffmpegWords(context, clip, target);
  Benchmarks::timeInTurn(
      rounds,
      folder,
      {[&] { return Benchmarks::runBare(ffmpeg, folder); },
       [&] { return Benchmarks::runBare(ffprobe, folder) && Benchmarks::runBare(ffmpeg, folder); },
       [&] {
         UniversalEngine::media({clip, FileKind::video, ""},
                                target,
                                std::nullopt,
                                folder / ("result." + target),
                                {},
                                context);
         return true;
       }});
  return EXIT_SUCCESS;
}

}  // namespace

int main(int count, char** arguments) try {
  const Words words(arguments + 1, arguments + count);
  return drive(std::stoi(words.at(0)), words.at(1), words.at(2), words.at(3));
} catch (const std::exception& error) {
  std::fprintf(stderr, "media_driver: %s\n", error.what());
  return EXIT_FAILURE;
}
