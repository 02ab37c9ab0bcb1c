#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "engine/primitives/file_info.h"
#include "engine/primitives/value.h"
#include "universal/job/arguments.h"
#include "universal/job/job_context.h"

/// Audio and video through ffmpeg. Each call checks everything before the engine starts; what a
/// failed run wrote goes with the workspace.
namespace tolvane::UniversalEngine {

/// The head of every ffmpeg command line: quiet, asking nothing.
[[nodiscard]] Arguments mediaHead();

/// mediaHead() and an input that is read from files only.
[[nodiscard]] Arguments mediaPrefix(const std::filesystem::path& input);

/// Converts one file, or applies a tool that makes one file.
/// @param target extension of the output.
/// @param tool absent for a plain conversion.
/// @param output in the workspace.
/// @throws ConversionFailure for options, inputs and targets that do not fit.
/// @throws as probe() and LocalToolchain::run
void media(const FileInfo& info,
           std::string_view target,
           std::optional<std::string_view> tool,
           const std::filesystem::path& output,
           const Value::Map& options,
           const JobContext& context);

/// Cuts one file into pieces of "seconds" each.
/// @return segments/segment-000.mp4, ... in the workspace, sorted by name.
/// @throws ConversionFailure, PlatformError
[[nodiscard]] std::vector<std::filesystem::path> mediaSegments(const FileInfo& info,
                                                               const Value::Map& options,
                                                               const JobContext& context);

}  // namespace tolvane::UniversalEngine
