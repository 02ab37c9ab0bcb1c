#pragma once

#include <optional>

#include "platform/files/bytes.h"
#include "platform/images/bitmap.h"

namespace tolvane {

/// Decodes the PNG files that are all but always met: 8 bits, grey, RGB or RGBA, not interlaced, no
/// transparent colour, colours in sRGB.
/// @param file the content of a whole file.
/// @param maxDimension pictures with a longer side are left alone.
/// @return nullopt for every other file, and where anything is wrong, however small; a more patient
/// reader must judge it.
[[nodiscard]] std::optional<Bitmap> readPlainPng(BytesView file, int maxDimension);

}  // namespace tolvane
