#pragma once

#include <optional>

#include "platform/files/bytes.h"
#include "platform/images/image_decoder.h"

namespace tolvane {

/// @param file the content of a whole file.
/// @return nullopt as for readJpegPhoto().
[[nodiscard]] std::optional<JpegPhoto> jpegPhoto(BytesView file);

}  // namespace tolvane
