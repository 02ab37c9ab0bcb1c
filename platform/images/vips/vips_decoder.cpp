#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <vips/vips8>

#include "platform/files/file_system.h"
#include "platform/images/color_profile.h"
#include "platform/images/image_decoder.h"
#include "platform/images/image_limits.h"
#include "platform/images/jpeg_segments.h"
#include "platform/images/orientation.h"
#include "platform/images/vips/bmp_reader.h"
#include "platform/images/vips/trusted_readers.h"
#include "platform/images/vips/vips_library.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using TrustedReaders::Kind;
using TrustedReaders::Reader;
using vips::VImage;

struct Size {
  int width = 0;
  int height = 0;
};

/// The size at which the longer side is at most `limit`; never larger than `stored`.
Size fitted(Size stored, int limit) {
  const int longer = std::max(stored.width, stored.height);
  if (longer <= limit) {
    return stored;
  }
  const auto scaled = [&](int side) {
    const double exact = static_cast<double>(side) * limit / longer;
    return std::max(1, static_cast<int>(std::lround(exact)));
  };
  return {scaled(stored.width), scaled(stored.height)};
}

/// A picture whose header is read and whose pixels are not.
struct OpenPicture {
  VImage image;
  Reader reader{};
};

/// Takes the name as it is; elsewhere the library reads options from brackets in it.
vips::VSource sourceOf(const fs::path& file) {
  return vips::VSource::new_from_file(file.c_str());
}

/// As above; a JPEG file gets the end that it lacks.
/// @param completed holds the bytes in that case; outlives the source.
vips::VSource sourceOf(const fs::path& file, Bytes& completed) {
  constexpr std::string_view jpegStart = "\xFF\xD8\xFF";
  if (!startsWith(FileSystem::readPrefix(file, jpegStart.size()), jpegStart)) {
    return sourceOf(file);
  }
  auto whole = withEndOfImage(FileSystem::readAll(file));
  if (!whole) {
    return sourceOf(file);
  }
  completed = *std::move(whole);
  return vips::VSource::new_from_memory(completed.data(), completed.size());
}

/// By the content.
/// @return nullptr when it is no image of a trusted kind.
const Reader* readerOf(const vips::VSource& source) {
  const auto* const reader = std::find_if(
      TrustedReaders::all.begin(), TrustedReaders::all.end(), [&](const Reader& candidate) {
        return vips_foreign_is_a_source(candidate.operation, source.get_source()) != FALSE;
      });
  vips_error_clear();
  return reader == TrustedReaders::all.end() ? nullptr : reader;
}

/// @param shrink 1, 2, 4 or 8; above 1 only for JPEG.
OpenPicture open(const vips::VSource& source,
                 const Reader& reader,
                 int shrink = 1,
                 VipsFailOn strictness = VIPS_FAIL_ON_ERROR) {
  VImage image;
  vips::VOption* options = VImage::option()
                               ->set("source", source)
                               ->set("access", VIPS_ACCESS_SEQUENTIAL)
                               ->set("fail_on", strictness)
                               ->set("out", &image);
  if (shrink > 1) {
    options->set("shrink", shrink);
  }
  VImage::call(reader.operation, options);
  return {image, reader};
}

int orientationOf(const VImage& image) {
  const int orientation = image.get_typeof(VIPS_META_ORIENTATION) == G_TYPE_INT
                              ? image.get_int(VIPS_META_ORIENTATION)
                              : 1;
  return orientation >= 1 && orientation <= 8 ? orientation : 1;
}

std::string extensionOf(const OpenPicture& picture) {
  constexpr const char* compressionField = "heif-compression";
  if (picture.reader.kind != Kind::heif || picture.image.get_typeof(compressionField) == 0) {
    return picture.reader.extension;
  }
  const std::string_view compression = picture.image.get_string(compressionField);
  return compression == "hevc" ? "heic" : compression == "av1" ? "avif" : picture.reader.extension;
}

/// Before the exact scaling, JPEG can be read at a half, a quarter or an eighth. At least a factor
/// of two stays for the scaling, which is what keeps the picture smooth.
int shrinkAtReading(const OpenPicture& picture, Size target) {
  if (picture.reader.kind != Kind::jpeg) {
    return 1;
  }
  const int factor =
      std::min(picture.image.width() / target.width, picture.image.height() / target.height);
  return factor >= 16 ? 8 : factor >= 8 ? 4 : factor >= 4 ? 2 : 1;
}

VImage scaled(const VImage& image, Size target) {
  if (image.width() == target.width && image.height() == target.height) {
    return image;
  }
  const double horizontal = static_cast<double>(target.width) / image.width();
  const double vertical = static_cast<double>(target.height) / image.height();
  const auto resize = [&](const VImage& source) {
    return source.resize(horizontal, VImage::option()->set("vscale", vertical));
  };
  // Colours weigh by their opacity, else the hidden ones bleed into edges.
  return image.has_alpha() ? resize(image.premultiply()).unpremultiply().cast(image.format())
                           : resize(image);
}

bool hasForeignProfile(const VImage& image) {
  if (image.get_typeof(VIPS_META_ICC_NAME) == 0) {
    return false;
  }
  std::size_t size = 0;
  const auto* data = static_cast<const std::uint8_t*>(image.get_blob(VIPS_META_ICC_NAME, &size));
  return !ColorProfile::isStandardRgb({data, size});
}

bool hasForeignColors(const VImage& image) {
  return image.interpretation() == VIPS_INTERPRETATION_CMYK || hasForeignProfile(image);
}

/// By the embedded profile; CMYK without one is taken for the library's usual press.
VImage fromProfile(const VImage& image) {
  vips::VOption* options = VImage::option()->set("embedded", true);
  if (image.interpretation() == VIPS_INTERPRETATION_CMYK) {
    options->set("input_profile", "cmyk");
  }
  try {
    return image.icc_transform("srgb", options);
  } catch (const vips::VError&) {
    vips_error_clear();
    return image;  // a profile that is damaged or of another kind of picture says nothing
  }
}

bool isGrey(const VImage& image) {
  return image.bands() - (image.has_alpha() ? 1 : 0) < 3;
}

/// Eight bits; one or two bands for grey, three or four for sRGB.
VImage onScreen(VImage image) {
  const bool grey = isGrey(image);
  if (grey && image.bands() == 1 && vips_band_format_isfloat(image.format()) != FALSE) {
    // As with float colours, 0 to 1 is linear light.
    image = VImage::bandjoin({image, image, image})
                .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_scRGB));
  } else if (hasForeignColors(image)) {
    image = fromProfile(image);
  }
  image = image.colourspace(grey ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB);
  return image.format() == VIPS_FORMAT_UCHAR ? image : image.cast(VIPS_FORMAT_UCHAR);
}

/// Takes a finished strip, which is as wide as the picture.
int copyRows(VipsRegion* strip, VipsRect* area, void* context) {
  auto& bitmap = *static_cast<Bitmap*>(context);
  for (int y = area->top; y < area->top + area->height; ++y) {
    const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(y - strip->valid.top) * strip->bpl;
    std::memcpy(&bitmap.pixels[static_cast<std::size_t>(y) * bitmap.stride()],
                strip->data + offset,
                bitmap.stride());
  }
  return 0;
}

/// Runs the pipeline, rows from the top, on the library's threads. An error in the last strips can
/// come after the library has found the run to be a success; it is in its log all the same.
Bitmap pixelsOf(VImage image) {
  if (image.bands() == 2) {
    const VImage grey = image[0];
    image = VImage::bandjoin({grey, grey, grey, image[1]});
  }
  constexpr std::array layouts = {PixelLayout::grey, PixelLayout::rgb, PixelLayout::rgba};
  const std::size_t index = image.bands() == 1 ? 0 : static_cast<std::size_t>(image.bands()) - 2;
  Bitmap bitmap{image.width(), image.height(), layouts.at(index), {}};
  bitmap.pixels.resize(bitmap.stride() * static_cast<std::size_t>(bitmap.height));
  vips_error_clear();
  if (vips_sink_disc(image.get_image(), copyRows, &bitmap) != 0 || *vips_error_buffer() != '\0') {
    throw VipsLibrary::takeError();
  }
  return bitmap;
}

Bitmap decodeBmp(const fs::path& file, int maxDimension) {
  Bitmap full = BmpReader::decode(file);
  const Size target = fitted({full.width, full.height}, maxDimension);
  if (target.width == full.width) {
    return full;
  }
  const VImage image = VImage::new_from_memory(full.pixels.data(),
                                               full.pixels.size(),
                                               full.width,
                                               full.height,
                                               bytesPerPixel(full.layout),
                                               VIPS_FORMAT_UCHAR);
  return pixelsOf(onScreen(scaled(
      image.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB)), target)));
}

/// @return what `read` says of the opened picture; nullopt when the file is none.
template <typename Reading>
auto ofOpened(const fs::path& file, Reading read)
    -> std::optional<decltype(read(std::declval<const OpenPicture&>()))> {
  const vips::VSource source = sourceOf(file);
  const Reader* reader = readerOf(source);
  if (reader == nullptr) {
    return std::nullopt;
  }
  try {
    return read(open(source, *reader));
  } catch (const vips::VError&) {
    vips_error_clear();
    return std::nullopt;  // it starts like an image, and no more
  }
}

ImageHeader headerOf(const OpenPicture& picture) {
  return {picture.image.width(), picture.image.height(), extensionOf(picture)};
}

std::string colorModelOf(const VImage& image) {
  switch (image.interpretation()) {
    case VIPS_INTERPRETATION_CMYK:
      return "CMYK";
    case VIPS_INTERPRETATION_LAB:
    case VIPS_INTERPRETATION_LABS:
      return "Lab";
    default:
      return isGrey(image) ? "Gray" : "RGB";
  }
}

ImageProperties propertiesOf(const OpenPicture& picture) {
  constexpr int bitsInByte = 8;
  const VImage& image = picture.image;
  return {.width = image.width(),
          .height = image.height(),
          .orientation = orientationOf(image),
          .colorModel = colorModelOf(image),
          .depth = bitsInByte * static_cast<int>(vips_format_sizeof(image.format())),
          .hasAlpha = image.has_alpha(),
          .hasColorProfile = image.get_typeof(VIPS_META_ICC_NAME) != 0,
          .hasForeignColors = hasForeignColors(image)};
}

std::optional<ImageProperties> propertiesOfBmp(const fs::path& file) {
  const std::optional<ImageHeader> header = BmpReader::header(file);
  if (!header) {
    return std::nullopt;
  }
  return ImageProperties{.width = header->width, .height = header->height, .colorModel = "RGB"};
}

Bitmap decodePicture(const fs::path& file, int maxDimension, VipsFailOn strictness) {
  Bytes completed;
  const vips::VSource source = sourceOf(file, completed);
  const Reader* reader = readerOf(source);
  if (reader == nullptr) {
    throw PlatformError("The file is no image of a known kind.");
  }
  if (reader->kind != Kind::jpeg) {
    strictness = VIPS_FAIL_ON_ERROR;
  }
  const OpenPicture picture = open(source, *reader, 1, strictness);
  const Size stored{picture.image.width(), picture.image.height()};
  if (!isWithinDecodingLimit(stored.width, stored.height)) {
    throw beyondDecodingLimit();
  }
  const Size target = fitted(stored, maxDimension);
  const int orientation = orientationOf(picture.image);
  if (const int shrink = shrinkAtReading(picture, target); shrink > 1) {
    Bytes again;
    const vips::VSource second = sourceOf(file, again);
    return Orientation::upright(
        pixelsOf(onScreen(scaled(open(second, *reader, shrink, strictness).image, target))),
        orientation);
  }
  return Orientation::upright(pixelsOf(onScreen(scaled(picture.image, target))), orientation);
}

/// Translates the library's exceptions.
template <typename Action>
auto inOurWords(Action action) {
  VipsLibrary::start();
  try {
    return action();
  } catch (const vips::VError&) {
    throw VipsLibrary::takeError();
  }
}

/// The library takes missing data of a JPEG picture for as little as a byte too many: it warns.
Bitmap decodeComplete(const fs::path& file, int maxDimension) {
  try {
    return inOurWords([&] { return decodePicture(file, maxDimension, VIPS_FAIL_ON_WARNING); });
  } catch (const PlatformError& error) {
    if (IncompleteImage::isMeantBy(error.what())) {
      throw IncompleteImage(error.what());
    }
  }
  return inOurWords([&] { return decodePicture(file, maxDimension, VIPS_FAIL_ON_ERROR); });
}

bool isBmp(const fs::path& file) {
  return BmpReader::recognizes(FileSystem::readPrefix(file, 2));
}

class VipsDecoder final : public ImageDecoder {
 public:
  std::optional<ImageHeader> probe(const fs::path& file) override {
    return inOurWords(
        [&] { return isBmp(file) ? BmpReader::header(file) : ofOpened(file, headerOf); });
  }

  std::optional<ImageProperties> properties(const fs::path& file) override {
    return inOurWords(
        [&] { return isBmp(file) ? propertiesOfBmp(file) : ofOpened(file, propertiesOf); });
  }

  Bitmap decode(const fs::path& file, int maxDimension) override {
    return isBmp(file) ? inOurWords([&] { return decodeBmp(file, maxDimension); })
                       : decodeComplete(file, maxDimension);
  }
};

}  // namespace

}  // namespace tolvane

extern "C" __attribute__((visibility("default"))) void* tolvaneImageDecoder() {
  static tolvane::VipsDecoder decoder;
  return static_cast<tolvane::ImageDecoder*>(&decoder);
}
