#include "platform/images/image_decoder.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/files/file_system.h"
#include "platform/images/color_profile.h"
#include "platform/images/image_header.h"
#include "platform/images/image_limits.h"
#include "platform/images/jpeg_codec.h"
#include "platform/images/jpeg_photo.h"
#include "platform/images/jpeg_segments.h"
#include "platform/images/orientation.h"
#include "platform/images/png_reader.h"
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

/// A photo that needs neither scaling nor a conversion of colours.
std::optional<Bitmap> plainJpeg(BytesView file, int maxDimension) {
  const std::optional<JpegPhoto> photo = jpegPhoto(file);
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

std::optional<Bitmap> plainPicture(const fs::path& file, int maxDimension) {
  constexpr std::string_view jpegStart = "\xFF\xD8\xFF";
  constexpr std::string_view pngStart = "\x89PNG";
  const Bytes start = FileSystem::readPrefix(file, pngStart.size());
  if (startsWith(start, jpegStart)) {
    const Bytes content = FileSystem::readAll(file);
    const std::optional<Bytes> completed = withEndOfImage(content);
    return plainJpeg(completed ? *completed : content, maxDimension);
  }
  if (startsWith(start, pngStart)) {
    return readPlainPng(FileSystem::readAll(file), maxDimension);
  }
  return std::nullopt;
}

/// Spares the common cases the loading of the complete decoder.
class QuickDecoder final : public ImageDecoder {
 public:
  std::optional<ImageHeader> probe(const fs::path& file) override {
    const Bytes start = FileSystem::readPrefix(file, imageHeaderLimit);
    if (!mayBeImage(start)) {
      return std::nullopt;
    }
    const std::optional<ImageHeader> header = imageHeader(start);
    return header ? header : completeDecoder().probe(file);
  }

  std::optional<ImageProperties> properties(const fs::path& file) override {
    return completeDecoder().properties(file);
  }

  Bitmap decode(const fs::path& file, int maxDimension) override {
    std::optional<Bitmap> picture = plainPicture(file, maxDimension);
    return picture ? *std::move(picture) : completeDecoder().decode(file, maxDimension);
  }
};

}  // namespace

bool IncompleteImage::isMeantBy(std::string_view words) {
  return words.find("remature end of") != std::string_view::npos;
}

ImageDecoder& imageDecoder() {
  static QuickDecoder decoder;
  return decoder;
}

}  // namespace tolvane
