#pragma once

#include <filesystem>

#include "engine/primitives/file_info.h"

namespace tolvane::UniversalFormats {

/// Second stage of admission: what is no package, PDF or raster image is classified by its
/// extension, and the claim is held against the first bytes.
/// @param url resolved, a regular file.
/// @throws ConversionFailure with the reason of the refusal; PlatformError when the file cannot be
/// read.
[[nodiscard]] FileInfo inspect(const std::filesystem::path& url);

}  // namespace tolvane::UniversalFormats
