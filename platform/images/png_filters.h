#pragma once

#include <cstdint>
#include <span>

#include "platform/files/bytes.h"

/// How PNG stores a row as differences from what lies before and above it.
namespace tolvane::PngFilters {

/// @param filter the number that stands before the stored row.
/// @param out, stored, above of one length; `above` is the row over it, zeros over the first.
/// @param pixelSize 1, 3 or 4.
/// @return false when there is no such filter.
[[nodiscard]] bool undo(std::uint8_t filter,
                        std::span<std::uint8_t> out,
                        BytesView stored,
                        BytesView above,
                        int pixelSize);

}  // namespace tolvane::PngFilters
