#include "platform/documents/qpdf/picture_stream.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <qpdf/QPDF.hh>

#include "platform/images/big_endian.h"
#include "platform/images/image_encoder.h"

namespace tolvane::PictureStream {

namespace {

QPDFObjectHandle name(const char* value) {
  return QPDFObjectHandle::newName(value);
}

QPDFObjectHandle imageObject(QPDF& document,
                             int width,
                             int height,
                             const QPDFObjectHandle& colorSpace) {
  QPDFObjectHandle stream = document.newStream();
  QPDFObjectHandle dictionary = stream.getDict();
  dictionary.replaceKey("/Type", name("/XObject"));
  dictionary.replaceKey("/Subtype", name("/Image"));
  dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(width));
  dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(height));
  dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
  dictionary.replaceKey("/ColorSpace", colorSpace);
  return stream;
}

/// The deflated rows of a PNG file: PDF stores them the same way, filters of the rows included.
struct PngRows {
  bool grey = false;
  std::string deflated;
};

/// @param png from our own encoder: eight bits, grey or rgb, not interlaced.
PngRows rowsOf(BytesView png) {
  constexpr std::size_t signature = 8;
  constexpr std::size_t framing = 12;  // length and type before a chunk's data, checksum after it
  constexpr std::size_t colorTypeInHeader = 9;
  PngRows rows;
  for (std::size_t chunk = signature; chunk + framing <= png.size();) {
    const std::size_t length = BigEndian::read32(png, chunk);
    const std::string_view type = asText(png.subspan(chunk + 4, 4));
    const BytesView data = png.subspan(chunk + 8, length);
    if (type == "IHDR") {
      rows.grey = data[colorTypeInHeader] == 0;
    } else if (type == "IDAT") {
      rows.deflated += asText(data);
    }
    chunk += framing + length;
  }
  return rows;
}

QPDFObjectHandle opaqueImage(QPDF& document, const Bitmap& picture) {
  const PngRows rows = rowsOf(ImageEncoder::png(picture));
  QPDFObjectHandle image = imageObject(
      document, picture.width, picture.height, name(rows.grey ? "/DeviceGray" : "/DeviceRGB"));
  const QPDFObjectHandle parameters = QPDFObjectHandle::parse(
      fmt::format("<< /Predictor 15 /Colors {} /BitsPerComponent 8 /Columns {} >>",
                  rows.grey ? 1 : 3,
                  picture.width));
  image.replaceStreamData(rows.deflated, name("/FlateDecode"), parameters);
  return image;
}

/// Components `first` to `first + count - 1` of an rgba picture.
Bitmap components(const Bitmap& picture, std::size_t first, std::size_t count) {
  Bitmap part{picture.width,
              picture.height,
              count == 1 ? PixelLayout::grey : PixelLayout::rgb,
              Bytes(picture.pixels.size() / 4 * count)};
  std::uint8_t* target = part.pixels.data();
  for (std::size_t source = first; source < picture.pixels.size(); source += 4) {
    target = std::copy_n(picture.pixels.data() + source, count, target);
  }
  return part;
}

bool isOpaque(const Bitmap& alpha) {
  return std::all_of(
      alpha.pixels.begin(), alpha.pixels.end(), [](std::uint8_t value) { return value == 0xFF; });
}

QPDFObjectHandle colorSpaceOf(QPDF& document, const JpegPhoto& photo) {
  const QPDFObjectHandle device = name(photo.components == 1 ? "/DeviceGray" : "/DeviceRGB");
  if (photo.colorProfile.empty()) {
    return device;
  }
  QPDFObjectHandle profile = document.newStream(std::string(asText(photo.colorProfile)));
  profile.getDict().replaceKey("/N", QPDFObjectHandle::newInteger(photo.components));
  profile.getDict().replaceKey("/Alternate", device);
  return QPDFObjectHandle::newArray({name("/ICCBased"), profile});
}

}  // namespace

QPDFObjectHandle of(QPDF& document, const Bitmap& picture) {
  if (picture.layout != PixelLayout::rgba) {
    return opaqueImage(document, picture);
  }
  QPDFObjectHandle image = opaqueImage(document, components(picture, 0, 3));
  const Bitmap alpha = components(picture, 3, 1);
  if (!isOpaque(alpha)) {
    image.getDict().replaceKey("/SMask", opaqueImage(document, alpha));
  }
  return image;
}

QPDFObjectHandle of(QPDF& document, const JpegPhoto& photo) {
  QPDFObjectHandle image =
      imageObject(document, photo.width, photo.height, colorSpaceOf(document, photo));
  image.replaceStreamData(
      std::string(asText(photo.data)), name("/DCTDecode"), QPDFObjectHandle::newNull());
  return image;
}

}  // namespace tolvane::PictureStream
