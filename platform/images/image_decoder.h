#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files/platform_error.h"
#include "platform/images/bitmap.h"

namespace tolvane {

/// A picture ends before all of it was there.
class IncompleteImage : public PlatformError {
 public:
  using PlatformError::PlatformError;

  /// @return whether that is what the words of the JPEG library, or of one that uses it, mean.
  [[nodiscard]] static bool isMeantBy(std::string_view words);
};

/// What the header of a raster image says of its first picture.
struct ImageHeader {
  /// Pixels, as stored: an orientation tag is not applied. Damaged files may announce 0.
  int width = 0;
  int height = 0;
  /// The preferred one of the type: "jpeg", "png", "gif", "tiff", "webp", ...
  std::string extension;
};

/// What a raster image says of its first picture beyond its size.
struct ImageProperties {
  int width = 0;  ///< pixels, as stored
  int height = 0;
  int orientation = 1;     ///< EXIF orientation, 1 to 8
  std::string colorModel;  ///< "Gray", "RGB", "CMYK" or "Lab"
  int depth = 8;           ///< bits a component, as decoded
  bool hasAlpha = false;
  bool hasColorProfile = false;
  /// Whether its numbers mean other colours than in sRGB: a profile says so, or it is CMYK.
  bool hasForeignColors = false;
};

/// A JPEG file that can stand in a PDF as it is: 8 bits, grey or three components.
struct JpegPhoto {
  Bytes data;  ///< without its EXIF segments
  int width = 0;
  int height = 0;
  int components = 3;   ///< 1 or 3
  int orientation = 1;  ///< EXIF orientation, 1 to 8
  Bytes colorProfile;   ///< ICC, for as many components; empty when there is none
};

/// Reads raster images: JPEG, PNG, GIF, TIFF, WebP, HEIF and AVIF, JPEG 2000, BMP. What a file is
/// follows from its content, never from its name. Worker thread.
class ImageDecoder {
 public:
  ImageDecoder() = default;
  virtual ~ImageDecoder() = default;
  ImageDecoder(const ImageDecoder&) = delete;
  ImageDecoder& operator=(const ImageDecoder&) = delete;

  /// Reads the header only. @return nullopt when the file is no raster image that can be opened.
  [[nodiscard]] virtual std::optional<ImageHeader> probe(const std::filesystem::path& file) = 0;

  /// Reads the header only. @return as probe().
  [[nodiscard]] virtual std::optional<ImageProperties> properties(
      const std::filesystem::path& file) = 0;

  /// The first picture, upright, in sRGB, 8 bits, scaled down (never up) so that its longer side is
  /// at most `maxDimension` pixels. Layout grey, rgb or rgba.
  /// A JPEG file may lack its last marker.
  /// @throws IncompleteImage for a JPEG file that lacks more; PlatformError when the file is
  /// damaged or no image.
  [[nodiscard]] virtual Bitmap decode(const std::filesystem::path& file, int maxDimension) = 0;
};

/// One object for the process. Headers of JPEG and PNG files, and pictures in them that need
/// neither scaling nor a conversion of colours, are read without the decoding library, which is
/// loaded when it is first needed.
[[nodiscard]] ImageDecoder& imageDecoder();

/// A photo without its last marker gets one, whatever else it lacks.
/// @return nullopt when the file is no JPEG, or not one that a PDF can hold as it is. Does not
/// decode.
[[nodiscard]] std::optional<JpegPhoto> readJpegPhoto(const std::filesystem::path& file);

}  // namespace tolvane
