#include "universal/images/image.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/files/file_names.h"
#include "universal/images/engine_path.h"
#include "universal/job/option_readers.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeLimit = 120;  // seconds
constexpr std::array<std::string_view, 3> opaqueFormats = {"jpg", "bmp", "heic"};

Arguments opening(const std::string& input) {
  return {"-limit",
          "memory",
          "128MiB",
          "-limit",
          "map",
          "256MiB",
          "-limit",
          "disk",
          "512MiB",
          "-limit",
          "time",
          "60",
          input + "[0]",
          "-auto-orient"};
}

bool isOpaque(const fs::path& output) {
  const std::string format = FileNames::lowerExtension(output);
  return std::find(opaqueFormats.begin(), opaqueFormats.end(), format) != opaqueFormats.end();
}

}  // namespace

void image(const fs::path& input,
           const fs::path& output,
           const Arguments& arguments,
           const Value::Map& options,
           const JobContext& context) {
  const double quality = number(options, "quality", 0.9, 0.1, 1.0);
  Arguments all = opening(enginePath(input, context));
  all.insert(all.end(), arguments.begin(), arguments.end());
  if (isOpaque(output)) {
    all.insert(all.end(), {"-background", "white", "-alpha", "remove", "-alpha", "off"});
  }
  const int percent = static_cast<int>(quality * 100);
  all.insert(all.end(),
             {"-strip", "-quality", std::to_string(percent), enginePath(output, context)});
  context.toolchain.run({.name = "magick",
                         .arguments = std::move(all),
                         .in = context.workspace,
                         .timeout = timeLimit,
                         .inputs = {input},
                         .environment = {{"MAGICK_TEMPORARY_PATH", context.workspace.string()}}},
                        context.token);
}

fs::path normalized(const fs::path& input, const JobContext& context) {
  fs::path copy = context.freshFile("normalized-", ".png");
  image(input, copy, {}, {}, context);
  return copy;
}

std::vector<fs::path> normalizedAll(const std::vector<FileInfo>& images,
                                    const JobContext& context) {
  std::vector<fs::path> copies;
  copies.reserve(images.size());
  for (const FileInfo& image : images) {
    copies.push_back(normalized(image.url, context));
  }
  return copies;
}

}  // namespace tolvane::UniversalEngine
