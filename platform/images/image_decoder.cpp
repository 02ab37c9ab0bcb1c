#include "platform/images/image_decoder.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/files/file_system.h"
#include "platform/images/color_profile.h"
#include "platform/images/image_header.h"
#include "platform/images/image_limits.h"
#include "platform/images/jpeg_codec.h"
#include "platform/images/jpeg_photo.h"
#include "platform/images/orientation.h"
#include "platform/modules/module_loader.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

/// Of every kind of image; takes 50 ms to load.
ImageDecoder& completeDecoder() {
  static ImageDecoder& decoder =
      *static_cast<ImageDecoder*>(ModuleLoader::load("tolvane-images", "tolvaneImageDecoder"));
  return decoder;
}

bool isJpeg(const fs::path& file) {
  return FileSystem::readPrefix(file, 3) == Bytes{0xFF, 0xD8, 0xFF};
}

/// Photos that need neither scaling nor a conversion of colours.
std::optional<Bitmap> plainPhoto(const fs::path& file, int maxDimension) {
  const std::optional<JpegPhoto> photo = readJpegPhoto(file);
  if (!photo || std::max(photo->width, photo->height) > maxDimension ||
      !isWithinDecodingLimit(photo->width, photo->height) ||
      (!photo->colorProfile.empty() && !ColorProfile::isStandardRgb(photo->colorProfile))) {
    return std::nullopt;
  }
  std::optional<Bitmap> picture = JpegCodec::decodeWithoutComplaint(*photo);
  if (picture) {
    picture = Orientation::upright(*std::move(picture), photo->orientation);
  }
  return picture;
}

/// Spares the common cases the loading of the complete decoder.
class QuickDecoder final : public ImageDecoder {
 public:
  std::optional<ImageHeader> probe(const fs::path& file) override {
    const std::optional<ImageHeader> header =
        imageHeader(FileSystem::readPrefix(file, imageHeaderLimit));
    return header ? header : completeDecoder().probe(file);
  }

  Bitmap decode(const fs::path& file, int maxDimension) override {
    if (isJpeg(file)) {
      if (std::optional<Bitmap> picture = plainPhoto(file, maxDimension)) {
        return *std::move(picture);
      }
    }
    return completeDecoder().decode(file, maxDimension);
  }
};

}  // namespace

ImageDecoder& imageDecoder() {
  static QuickDecoder decoder;
  return decoder;
}

}  // namespace tolvane
