#include "platform/images/image_header.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include <isa-l/crc.h>

#include "platform/images/big_endian.h"
#include "platform/images/jpeg_segments.h"

namespace tolvane {

namespace {

using namespace std::string_view_literals;

/// The combinations of depth and colour type that PNG knows.
bool isPngColor(int depth, int type) {
  constexpr int grey = 0;
  constexpr int palette = 3;
  const bool wide = depth == 8 || depth == 16;
  const bool narrow = depth == 1 || depth == 2 || depth == 4;
  switch (type) {
    case grey:
      return wide || narrow;
    case palette:
      return depth == 8 || narrow;
    case 2:
    case 4:
    case 6:
      return wide;
    default:
      return false;
  }
}

/// Sides that no decoder takes are told too: a file is refused for its size, not for its kind.
int told(std::uint32_t side) {
  constexpr std::uint32_t largest = std::numeric_limits<int>::max();
  return static_cast<int>(std::min(side, largest));
}

std::optional<ImageHeader> pngHeader(BytesView start) {
  constexpr std::string_view signature = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"sv;
  constexpr std::size_t size = 33;
  constexpr std::size_t checked = 17;  // bytes of type and content that the sum covers
  if (start.size() < size || !startsWith(start, signature)) {
    return std::nullopt;
  }
  const bool intact = crc32_gzip_refl(0, &start[12], checked) == BigEndian::read32(start, 29);
  if (!intact || !isPngColor(start[24], start[25])) {
    return std::nullopt;
  }
  return ImageHeader{told(BigEndian::read32(start, 16)), told(BigEndian::read32(start, 20)), "png"};
}

std::optional<ImageHeader> jpegHeader(BytesView start) {
  constexpr std::uint8_t progressive = 0xC2;
  JpegSegments segments(start);
  const std::optional<JpegSegment> first = segments.next();
  if (!first || first->marker != JpegMarker::startOfImage) {
    return std::nullopt;
  }
  while (const std::optional<JpegSegment> segment = segments.next()) {
    if (segment->marker == JpegMarker::startOfScan) {
      break;
    }
    if (JpegMarker::startsFrame(segment->marker)) {
      const std::optional<JpegFrame> frame = jpegFrame(*segment);
      if (!frame || frame->marker > progressive || frame->precision != 8) {
        break;
      }
      return ImageHeader{frame->width, frame->height, "jpeg"};
    }
  }
  return std::nullopt;
}

/// ISO media with one of the brands of HEIF and AVIF.
bool isHeif(BytesView start) {
  constexpr std::array<std::string_view, 10> brands = {
      "heic", "heix", "hevc", "heim", "heis", "hevm", "hevs", "mif1", "msf1", "avif"};
  return start.size() >= 12 && startsWith(start.subspan(4), "ftyp") &&
         std::any_of(brands.begin(), brands.end(), [start](std::string_view brand) {
           return startsWith(start.subspan(8), brand);
         });
}

}  // namespace

bool mayBeImage(BytesView start) {
  constexpr std::array<std::string_view, 12> signatures = {"\xFF\xD8\xFF"sv,  // JPEG
                                                           "\x89PNG"sv,
                                                           "GIF"sv,
                                                           "BM"sv,
                                                           "II*\0"sv,
                                                           "MM\0*"sv,
                                                           "II+\0"sv,
                                                           "MM\0+"sv,  // TIFF, BigTIFF
                                                           "\0\0\0\x0CjP  \r\n\x87\n"sv,
                                                           "\r\n\x87\n"sv,
                                                           "\xFF\x4F\xFF\x51"sv,  // JPEG 2000
                                                           "RIFF"sv};             // WebP
  return isHeif(start) ||
         std::any_of(signatures.begin(), signatures.end(), [start](std::string_view signature) {
           return startsWith(start, signature);
         });
}

std::optional<ImageHeader> imageHeader(BytesView start) {
  const std::optional<ImageHeader> png = pngHeader(start);
  return png ? png : jpegHeader(start);
}

}  // namespace tolvane
