#pragma once

#include "platform/documents/pdf_document.h"

class QPDFObjectHandle;

/// The boxes and the rotation of a page, inherited values included.
namespace tolvane::PageGeometry {

[[nodiscard]] PdfPageGeometry of(const QPDFObjectHandle& page);

/// Whether the page has a crop box that differs from its media box.
[[nodiscard]] bool isCropped(const QPDFObjectHandle& page);

}  // namespace tolvane::PageGeometry
