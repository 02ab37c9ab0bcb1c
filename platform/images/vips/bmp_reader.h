#pragma once

#include <filesystem>
#include <optional>

#include "platform/files/bytes.h"
#include "platform/images/bitmap.h"
#include "platform/images/image_decoder.h"

/// Windows bitmaps, which libvips does not read.
namespace tolvane::BmpReader {

/// Whether a file that starts so claims to be one.
[[nodiscard]] bool recognizes(BytesView start);

/// @return nullopt when the file cannot be opened as one.
[[nodiscard]] std::optional<ImageHeader> header(const std::filesystem::path& file);

/// Layout rgb or rgba, at full size.
/// @throws PlatformError when the file is damaged, cut short or larger than the decoding limit.
[[nodiscard]] Bitmap decode(const std::filesystem::path& file);

}  // namespace tolvane::BmpReader
