#pragma once

#include <array>
#include <optional>

#include "platform/documents/pdf_document.h"

class QPDFObjectHandle;

/// The boxes and the rotation of a page, inherited values included.
namespace tolvane::PageGeometry {

using Box = std::array<double, 4>;  ///< left, bottom, right, top; points

/// American letter size for a page without one.
/// @return nullopt when it has no finite size; it may be empty.
[[nodiscard]] std::optional<Box> mediaBox(const QPDFObjectHandle& page);

[[nodiscard]] PdfPageGeometry of(const QPDFObjectHandle& page);

/// Whether the page has a crop box that differs from its media box.
[[nodiscard]] bool isCropped(const QPDFObjectHandle& page);

}  // namespace tolvane::PageGeometry
