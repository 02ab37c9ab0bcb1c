#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/primitives/file_info.h"
#include "platform/images/image_decoder.h"
#include "universal/job/arguments.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Runs ImageMagick once, on the first picture of `input`, turned upright. Where the output's
/// format has no transparency, white shows through.
/// @param output in the workspace; its extension is its format.
/// @param arguments what is done to the picture.
/// @param options "quality": 0.1 to 1, 0.9 when absent.
/// @throws ConversionFailure, PlatformError
void image(const std::filesystem::path& input,
           const std::filesystem::path& output,
           const Arguments& arguments,
           const Value::Map& options,
           const JobContext& context);

/// What a failure of ImageMagick means, by what it printed.
/// @return nullopt when that is not known.
[[nodiscard]] std::optional<std::string> explainMagick(std::string_view printed);

/// @return nullopt when the file cannot be read, or is no image that is read without ImageMagick.
[[nodiscard]] std::optional<ImageHeader> headerOf(const std::filesystem::path& picture);

/// Writes the picture that the user sees, upright, as a PNG with a fresh name in the workspace.
/// @throws as image()
[[nodiscard]] std::filesystem::path normalized(const std::filesystem::path& input,
                                               const JobContext& context);

/// normalized() of each.
[[nodiscard]] std::vector<std::filesystem::path> normalizedAll(const std::vector<FileInfo>& images,
                                                               const JobContext& context);

}  // namespace tolvane::UniversalEngine
