#include "platform/documents/qpdf/page_geometry.h"

#include <algorithm>
#include <cmath>

#include <qpdf/QPDFPageObjectHelper.hh>

namespace tolvane::PageGeometry {

namespace {

/// The corners may stand in any order. nullopt when the entry is no box of finite size.
std::optional<Box> boxOf(const QPDFObjectHandle& page, const char* key) {
  QPDFObjectHandle entry = QPDFPageObjectHelper(page).getAttribute(key, false);
  if (!entry.isRectangle()) {
    return std::nullopt;
  }
  const auto number = [&entry](int index) { return entry.getArrayItem(index).getNumericValue(); };
  const auto [left, right] = std::minmax({number(0), number(2)});
  const auto [bottom, top] = std::minmax({number(1), number(3)});
  if (!std::isfinite(right - left) || !std::isfinite(top - bottom)) {
    return std::nullopt;
  }
  return Box{left, bottom, right, top};
}

}  // namespace

std::optional<Box> mediaBox(const QPDFObjectHandle& page) {
  if (QPDFPageObjectHelper(page).getAttribute("/MediaBox", false).isNull()) {
    return Box{0, 0, 612, 792};  // the size that every reader gives a page without one
  }
  return boxOf(page, "/MediaBox");
}

PdfPageGeometry of(const QPDFObjectHandle& page) {
  PdfPageGeometry geometry;
  if (const std::optional<Box> box = mediaBox(page)) {
    geometry.width = (*box)[2] - (*box)[0];
    geometry.height = (*box)[3] - (*box)[1];
  }
  if (!(geometry.width > 0 && geometry.height > 0)) {
    geometry.width = geometry.height = 0;
  }
  QPDFObjectHandle rotation = QPDFPageObjectHelper(page).getAttribute("/Rotate", false);
  if (rotation.isInteger()) {
    geometry.rotation = rotation.getIntValueAsInt();
  }
  return geometry;
}

bool isCropped(const QPDFObjectHandle& page) {
  const std::optional<Box> cropBox = boxOf(page, "/CropBox");
  return cropBox && cropBox != mediaBox(page);
}

}  // namespace tolvane::PageGeometry
