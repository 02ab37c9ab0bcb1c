#include "universal/combined/collage.h"

#include <cstddef>
#include <string>

#include "engine/primitives/conversion_failure.h"
#include "universal/images/engine_path.h"
#include "universal/images/image.h"
#include "universal/job/arguments.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeLimit = 120;  // seconds
constexpr std::size_t maxImages = 25;

/// The smallest square has room for all.
std::size_t columnsFor(std::size_t images) {
  std::size_t columns = 0;
  while (columns * columns < images) {
    ++columns;
  }
  return columns;
}

}  // namespace

fs::path collage(const std::vector<FileInfo>& images, const JobContext& context) {
  if (images.size() > maxImages) {
    throw ConversionFailure::message("Choose at most 25 images for a collage.");
  }
  Arguments arguments = {"montage"};
  for (const fs::path& copy : normalizedAll(images, context)) {
    arguments.push_back(enginePath(copy, context));
  }
  fs::path output = context.workspace / "result-collage.png";
  arguments.insert(arguments.end(),
                   {"-thumbnail",
                    "800x800>",
                    "-tile",
                    std::to_string(columnsFor(images.size())) + "x",
                    "-geometry",
                    "+12+12",
                    "-background",
                    "white",
                    enginePath(output, context)});
  context.run({.name = "magick",
               .arguments = std::move(arguments),
               .in = context.workspace,
               .timeout = timeLimit,
               .explain = explainMagick});
  return output;
}

}  // namespace tolvane::UniversalEngine
