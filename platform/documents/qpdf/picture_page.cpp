#include "platform/documents/qpdf/picture_page.h"

#include <array>
#include <cstddef>
#include <string>

#include <fmt/format.h>
#include <qpdf/QPDF.hh>

#include "platform/documents/qpdf/picture_stream.h"

namespace tolvane::PicturePage {

namespace {

// Where the picture's unit square goes on a page of one by one, by EXIF orientation from 1: the
// numbers of the matrix operator "cm". The stored picture's first row is the square's upper edge.
using Placement = std::array<int, 6>;
constexpr std::array<Placement, 8> placements = {{{1, 0, 0, 1, 0, 0},
                                                  {-1, 0, 0, 1, 1, 0},
                                                  {-1, 0, 0, -1, 1, 1},
                                                  {1, 0, 0, -1, 0, 1},
                                                  {0, -1, -1, 0, 1, 1},
                                                  {0, -1, 1, 0, 0, 1},
                                                  {0, 1, 1, 0, 0, 0},
                                                  {0, 1, -1, 0, 1, 0}}};

std::size_t placementIndex(int orientation) {
  return orientation >= 1 && orientation <= 8 ? static_cast<std::size_t>(orientation - 1) : 0;
}

/// @param width, height of the upright picture.
QPDFObjectHandle pageShowing(QPDF& document,
                             const QPDFObjectHandle& picture,
                             int width,
                             int height,
                             const Placement& place) {
  QPDFObjectHandle page = QPDFObjectHandle::parse(fmt::format(
      "<< /Type /Page /MediaBox [0 0 {} {}] /Resources << /XObject << >> >> >>", width, height));
  page.getKey("/Resources").getKey("/XObject").replaceKey("/Picture", picture);
  page.replaceKey("/Contents",
                  document.newStream(fmt::format("q {} {} {} {} {} {} cm /Picture Do Q\n",
                                                 place[0] * width,
                                                 place[1] * height,
                                                 place[2] * width,
                                                 place[3] * height,
                                                 place[4] * width,
                                                 place[5] * height)));
  return document.makeIndirectObject(page);
}

}  // namespace

QPDFObjectHandle of(QPDF& document, const Bitmap& picture) {
  return pageShowing(
      document, PictureStream::of(document, picture), picture.width, picture.height, placements[0]);
}

QPDFObjectHandle of(QPDF& document, const JpegPhoto& photo) {
  const std::size_t index = placementIndex(photo.orientation);
  const bool lies = index >= 4;  // these orientations exchange the sides
  return pageShowing(document,
                     PictureStream::of(document, photo),
                     lies ? photo.height : photo.width,
                     lies ? photo.width : photo.height,
                     placements[index]);
}

}  // namespace tolvane::PicturePage
