#include "platform/images/vips/bmp_reader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/images/image_limits.h"

namespace tolvane::BmpReader {

namespace {

namespace fs = std::filesystem;

struct ErrorDeleter {
  void operator()(GError* error) const { g_error_free(error); }
};

struct ObjectDeleter {
  void operator()(gpointer object) const { g_object_unref(object); }
};

std::uint32_t littleEndian32(BytesView bytes, std::size_t at) {
  return bytes[at] | static_cast<std::uint32_t>(bytes[at + 1]) << 8U |
         static_cast<std::uint32_t>(bytes[at + 2]) << 16U |
         static_cast<std::uint32_t>(bytes[at + 3]) << 24U;
}

/// The loader leaves rows that a file does not have as they are and says nothing.
bool holdsAllRows(BytesView file, int width, int height) {
  constexpr std::size_t pixelsOffset = 10;
  constexpr std::size_t headerSize = 14;
  constexpr std::size_t oldHeader = 12;  // bytes; the one without a compression field
  constexpr std::size_t compressedSize = 34;
  constexpr std::size_t enough = 40;
  if (file.size() < enough) {
    return false;
  }
  const bool old = littleEndian32(file, headerSize) == oldHeader;
  const std::size_t depth = file[old ? 24 : 28];
  const std::uint32_t compression = old ? 0 : littleEndian32(file, 30);
  const bool isRunLength = compression == 1 || compression == 2;
  const std::size_t rowSize = (static_cast<std::size_t>(width) * depth + 31) / 32 * 4;
  const std::size_t needed = isRunLength ? littleEndian32(file, compressedSize)
                                         : rowSize * static_cast<std::size_t>(height);
  return littleEndian32(file, pixelsOffset) + needed <= file.size();
}

enum class Wanted { header, pixels };

/// Feeds a file to the BMP loader, and to no other.
class Loading {
 public:
  explicit Loading(Wanted wanted) : wanted_(wanted) {
    GError* error = nullptr;
    loader_.reset(gdk_pixbuf_loader_new_with_type("bmp", &error));
    keep(error);
    if (loader_) {
      g_signal_connect(loader_.get(), "size-prepared", G_CALLBACK(onSize), this);
    }
  }
  Loading(const Loading&) = delete;
  Loading& operator=(const Loading&) = delete;
  ~Loading() {
    if (open_) {
      gdk_pixbuf_loader_close(loader_.get(), nullptr);
    }
  }

  /// @return whether the loader took all bytes and found them complete.
  bool feed(BytesView bytes) {
    if (!loader_) {
      return false;
    }
    GError* error = nullptr;
    open_ = true;
    const bool written =
        gdk_pixbuf_loader_write(loader_.get(), bytes.data(), bytes.size(), &error) != FALSE;
    keep(error);
    if (!written) {
      return false;
    }
    error = nullptr;
    open_ = false;
    const bool complete = gdk_pixbuf_loader_close(loader_.get(), &error) != FALSE;
    keep(error);
    return complete;
  }

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] const GdkPixbuf* picture() const {
    return loader_ ? gdk_pixbuf_loader_get_pixbuf(loader_.get()) : nullptr;
  }
  [[nodiscard]] PlatformError failure() const {
    return PlatformError(error_ ? error_->message : "The BMP image could not be read.");
  }

 private:
  static void onSize(GdkPixbufLoader* loader, int width, int height, gpointer context) {
    auto& self = *static_cast<Loading*>(context);
    self.width_ = width;
    self.height_ = height;
    if (self.wanted_ == Wanted::header) {
      gdk_pixbuf_loader_set_size(loader, 0, 0);  // allocates and decodes nothing
    }
  }

  void keep(GError* error) {
    if (error != nullptr) {
      error_.reset(error);
    }
  }

  Wanted wanted_;
  std::unique_ptr<GdkPixbufLoader, ObjectDeleter> loader_;
  std::unique_ptr<GError, ErrorDeleter> error_;
  bool open_ = false;
  int width_ = 0;
  int height_ = 0;
};

/// The loader holds rows in a padded buffer.
Bitmap unpadded(const GdkPixbuf* picture) {
  Bitmap bitmap{gdk_pixbuf_get_width(picture),
                gdk_pixbuf_get_height(picture),
                gdk_pixbuf_get_has_alpha(picture) != FALSE ? PixelLayout::rgba : PixelLayout::rgb,
                {}};
  const std::uint8_t* pixels = gdk_pixbuf_read_pixels(picture);
  const auto padded = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(picture));
  bitmap.pixels.reserve(bitmap.stride() * static_cast<std::size_t>(bitmap.height));
  for (int y = 0; y < bitmap.height; ++y, pixels += padded) {
    bitmap.pixels.insert(bitmap.pixels.end(), pixels, pixels + bitmap.stride());
  }
  return bitmap;
}

}  // namespace

bool recognizes(BytesView start) {
  return startsWith(start, "BM");
}

std::optional<ImageHeader> header(const fs::path& file) {
  constexpr std::size_t enough = 4096;  // headers and a palette of 256 colours
  Loading loading(Wanted::header);
  static_cast<void>(loading.feed(FileSystem::readPrefix(file, enough)));
  if (loading.width() < 1 || loading.height() < 1) {
    return std::nullopt;
  }
  return ImageHeader{loading.width(), loading.height(), "bmp"};
}

Bitmap decode(const fs::path& file) {
  const Bytes bytes = FileSystem::readAll(file);
  Loading header(Wanted::header);
  const bool opened = header.feed(bytes) || header.width() > 0;
  if (!opened) {
    throw header.failure();
  }
  if (!isWithinDecodingLimit(header.width(), header.height())) {
    throw beyondDecodingLimit();
  }
  if (!holdsAllRows(bytes, header.width(), header.height())) {
    throw PlatformError("The BMP image is cut short.");
  }
  Loading loading(Wanted::pixels);
  if (!loading.feed(bytes) || loading.picture() == nullptr) {
    throw loading.failure();
  }
  return unpadded(loading.picture());
}

}  // namespace tolvane::BmpReader
