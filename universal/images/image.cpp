#include "universal/images/image.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "engine/primitives/conversion_failure.h"
#include "engine/rendering.h"
#include "platform/files/bytes.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/images/image_decoder.h"
#include "platform/images/image_encoder.h"
#include "platform/images/jpeg_segments.h"
#include "universal/images/engine_path.h"
#include "universal/job/option_readers.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeLimit = 120;  // seconds
constexpr std::array<std::string_view, 3> opaqueFormats = {"jpg", "bmp", "heic"};

/// What the engine may hold of a picture in files: three versions of it, of eight bytes a pixel,
/// which is what the heaviest of our commands takes.
std::uint64_t megabytesFor(const fs::path& input) {
  constexpr std::uint64_t bytesPerPixel = 24;
  constexpr std::uint64_t megabyte = 1'048'576;
  const auto header = headerOf(input);
  const std::uint64_t pixels = header ? static_cast<std::uint64_t>(header->width) *
                                            static_cast<std::uint64_t>(header->height)
                                      : 0;
  return pixels * bytesPerPixel / megabyte + 1;
}

std::string limit(std::uint64_t least, std::uint64_t needed) {
  return std::to_string(std::max(least, needed)) + "MiB";
}

/// @param picture what the engine reads: `input`, or what was made of it.
Arguments opening(const fs::path& input, const std::string& picture) {
  const std::uint64_t needed = megabytesFor(input);
  return {"-limit",
          "memory",
          "128MiB",
          "-limit",
          "map",
          limit(256, needed),
          "-limit",
          "disk",
          limit(512, needed),
          "-limit",
          "time",
          "60",
          picture + "[0]",
          "-auto-orient"};
}

/// Whether the engine would get the picture wrong: it loses the transparency of HEIF and AVIF, and
/// drops colour profiles without minding what they say.
bool isReadBetterByUs(const fs::path& input) {
  const std::optional<ImageHeader> header = headerOf(input);
  if (!header) {
    return false;
  }
  if (header->extension == "heic" || header->extension == "heif" || header->extension == "avif") {
    return true;
  }
  const std::optional<ImageProperties> properties = imageDecoder().properties(input);
  return properties && properties->hasForeignColors;
}

/// The picture as the user sees it: upright, in sRGB, in 8 bits a component.
fs::path decoded(const fs::path& input, const JobContext& context) {
  constexpr int anySize = 16'384;  // pixels, the longer side
  fs::path copy = context.freshFile("decoded-", ".png");
  FileSystem::writeAtomically(copy, ImageEncoder::png(loadImage(input, anySize)));
  return copy;
}

/// The input, or a copy of it that the engine reads right: decoded, or a JPEG file with the last
/// marker that it lacked.
fs::path readable(const fs::path& input, const JobContext& context) {
  if (isReadBetterByUs(input)) {
    return decoded(input, context);
  }
  constexpr std::string_view jpegStart = "\xFF\xD8\xFF";
  std::error_code ignored;
  if (!fs::is_regular_file(input, ignored) ||
      !startsWith(FileSystem::readPrefix(input, jpegStart.size()), jpegStart)) {
    return input;
  }
  const std::optional<Bytes> completed = withEndOfImage(FileSystem::readAll(input));
  if (!completed) {
    return input;
  }
  fs::path copy = context.freshFile("completed-", ".jpg");
  FileSystem::writeAtomically(copy, *completed);
  return copy;
}

bool isOpaque(const fs::path& output) {
  const std::string format = FileNames::lowerExtension(output);
  return std::find(opaqueFormats.begin(), opaqueFormats.end(), format) != opaqueFormats.end();
}

}  // namespace

std::optional<ImageHeader> headerOf(const fs::path& picture) {
  try {
    return imageDecoder().probe(picture);
  } catch (const PlatformError&) {
    return std::nullopt;
  }
}

std::optional<std::string> explainMagick(std::string_view printed) {
  if (IncompleteImage::isMeantBy(printed)) {
    return imageIsCutShort;
  }
  if (printed.find("time limit exceeded") != std::string_view::npos) {
    return "The local engine timed out. Try a smaller file or selection.";
  }
  constexpr std::array<std::string_view, 4> marks = {
      "resources exhausted", "exceeds limit", "memory allocation failed", "unable to extend cache"};
  const bool isTooLarge = std::any_of(marks.begin(), marks.end(), [printed](std::string_view mark) {
    return printed.find(mark) != std::string_view::npos;
  });
  return isTooLarge ? std::optional<std::string>(
                          "This image takes more memory than the local "
                          "engine may use. Resize it first.")
                    : std::nullopt;
}

void image(const fs::path& input,
           const fs::path& output,
           const Arguments& arguments,
           const Value::Map& options,
           const JobContext& context) {
  const double quality = number(options, "quality", 0.9, 0.1, 1.0);
  const fs::path picture = readable(input, context);
  Arguments all = opening(input, enginePath(picture, context));
  all.insert(all.end(), arguments.begin(), arguments.end());
  if (isOpaque(output)) {
    all.insert(all.end(), {"-background", "white", "-alpha", "remove", "-alpha", "off"});
  }
  const int percent = static_cast<int>(quality * 100);
  all.insert(all.end(),
             {"-strip", "-quality", std::to_string(percent), enginePath(output, context)});
  const Bytes printed =
      context.run({.name = "magick",
                   .arguments = std::move(all),
                   .in = context.workspace,
                   .timeout = timeLimit,
                   .inputs = {picture},
                   .environment = {{"MAGICK_TEMPORARY_PATH", context.workspace.string()}},
                   .explain = explainMagick});
  // The engine paints grey what is missing, and succeeds.
  if (IncompleteImage::isMeantBy(asText(printed))) {
    throw ConversionFailure::message(imageIsCutShort);
  }
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
