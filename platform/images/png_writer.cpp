#include "platform/images/png_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>

#include "platform/files/platform_error.h"
#include "platform/images/big_endian.h"
#include "platform/images/grey_detection.h"
#include "platform/images/pixel_loops.h"

namespace tolvane {

namespace {

enum class Filter : std::uint8_t { none = 0, up = 2 };

/// The numbers by which PNG calls the ways in which pixels are stored.
enum class ColorType : std::uint8_t { grey = 0, rgb = 2, rgba = 6 };

constexpr std::size_t bytesOf(ColorType type) {
  return type == ColorType::grey ? 1 : type == ColorType::rgb ? 3 : 4;
}

ColorType colorTypeOf(const Bitmap& bitmap) {
  if (bitmap.layout == PixelLayout::rgba) {
    return ColorType::rgba;
  }
  return isGrey(bitmap) ? ColorType::grey : ColorType::rgb;
}

/// The rows of a bitmap as PNG holds them, before filtering.
class StoredRows {
 public:
  explicit StoredRows(const Bitmap& bitmap) : bitmap_(bitmap), type_(colorTypeOf(bitmap)) {}

  [[nodiscard]] ColorType type() const { return type_; }
  [[nodiscard]] int count() const { return bitmap_.height; }
  [[nodiscard]] std::size_t size() const {
    return static_cast<std::size_t>(bitmap_.width) * bytesOf(type_);
  }

  /// Valid until the row after the next one is asked for.
  [[nodiscard]] const std::uint8_t* row(int y) {
    const std::uint8_t* pixels = bitmap_.row(y).data();
    const Conversion convert = conversion();
    if (convert == nullptr) {
      return pixels;
    }
    Bytes& converted = converted_.at(static_cast<std::size_t>(y) % converted_.size());
    converted.resize(size());
    convert(converted.data(), pixels, static_cast<std::size_t>(bitmap_.width));
    return converted.data();
  }

 private:
  using Conversion = void (*)(std::uint8_t*, const std::uint8_t*, std::size_t);

  [[nodiscard]] Conversion conversion() const {
    if (bitmap_.layout == PixelLayout::bgrx) {
      return type_ == ColorType::grey ? PixelLoops::greyFromBgrx : PixelLoops::rgbFromBgrx;
    }
    const bool reduced = bitmap_.layout == PixelLayout::rgb && type_ == ColorType::grey;
    return reduced ? PixelLoops::greyFromRgb : nullptr;
  }

  const Bitmap& bitmap_;
  ColorType type_;
  std::array<Bytes, 2> converted_;
};

/// Drawings and text compress best as they are, photographs as differences: where fewer than seven
/// in ten sampled bytes equal their left neighbour, the picture is taken for a photograph.
Filter chooseFilter(StoredRows& rows) {
  const std::size_t pixel = bytesOf(rows.type());
  std::size_t equal = 0;
  std::size_t sampled = 0;
  for (int y = 8; y < rows.count(); y += 16) {
    const std::uint8_t* row = rows.row(y);
    for (std::size_t i = pixel; i < rows.size(); i += 3) {
      equal += row[i] == row[i - pixel] ? 1U : 0U;
      ++sampled;
    }
  }
  return equal * 10 < sampled * 7 ? Filter::up : Filter::none;
}

void appendChunk(Bytes& file, std::string_view type, BytesView content) {
  BigEndian::append32(file, static_cast<std::uint32_t>(content.size()));
  const std::size_t start = file.size();
  file.insert(file.end(), type.begin(), type.end());
  file.insert(file.end(), content.begin(), content.end());
  BigEndian::append32(file, crc32_gzip_refl(0, &file[start], file.size() - start));
}

Bytes headerContent(const Bitmap& bitmap, ColorType type) {
  constexpr std::uint8_t depth = 8;
  Bytes content;
  BigEndian::append32(content, static_cast<std::uint32_t>(bitmap.width));
  BigEndian::append32(content, static_cast<std::uint32_t>(bitmap.height));
  content.insert(content.end(), {depth, static_cast<std::uint8_t>(type), 0, 0, 0});
  return content;
}

/// Blocks of this size stay in the cache between filter and compressor.
constexpr std::size_t blockSize = 262144;

/// One compressed stream, written as image-data chunks as it comes.
class ImageDataStream {
 public:
  /// @param file not owned.
  explicit ImageDataStream(Bytes& file)
      : file_(file), stream_(std::make_unique<isal_zstream>()), levelBuffer_(ISAL_DEF_LVL1_LARGE) {
    isal_deflate_init(stream_.get());
    stream_->level = 1;
    stream_->level_buf = levelBuffer_.data();
    stream_->level_buf_size = static_cast<std::uint32_t>(levelBuffer_.size());
    stream_->gzip_flag = IGZIP_ZLIB;
  }

  enum class Position { inside, last };

  void add(Bytes& block, Position position) {
    stream_->next_in = block.data();
    stream_->avail_in = static_cast<std::uint32_t>(block.size());
    stream_->end_of_stream = position == Position::last ? 1 : 0;
    do {
      compressed_.resize(blockSize);
      stream_->next_out = compressed_.data();
      stream_->avail_out = blockSize;
      if (isal_deflate(stream_.get()) != COMP_OK) {
        throw PlatformError("The compression of a PNG file failed.");
      }
      compressed_.resize(blockSize - stream_->avail_out);
      if (!compressed_.empty()) {
        appendChunk(file_, "IDAT", compressed_);
      }
    } while (stream_->avail_out == 0 || stream_->avail_in > 0);
  }

 private:
  Bytes& file_;
  std::unique_ptr<isal_zstream> stream_;
  Bytes levelBuffer_;
  Bytes compressed_;
};

void appendFiltered(Bytes& block, StoredRows& rows, int y, Filter filter) {
  const std::uint8_t* row = rows.row(y);
  const bool differs = filter == Filter::up && y > 0;
  block.push_back(static_cast<std::uint8_t>(differs ? Filter::up : Filter::none));
  if (differs) {
    const std::size_t start = block.size();
    block.resize(start + rows.size());
    PixelLoops::subtract(&block[start], row, rows.row(y - 1), rows.size());
  } else {
    block.insert(block.end(), row, row + rows.size());
  }
}

}  // namespace

Bytes writePng(const Bitmap& bitmap) {
  StoredRows rows(bitmap);
  const Filter filter = chooseFilter(rows);
  Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  appendChunk(file, "IHDR", headerContent(bitmap, rows.type()));

  ImageDataStream data(file);
  Bytes block;
  for (int y = 0; y < rows.count(); ++y) {
    appendFiltered(block, rows, y, filter);
    const bool last = y + 1 == rows.count();
    if (last || block.size() >= blockSize) {
      data.add(block, last ? ImageDataStream::Position::last : ImageDataStream::Position::inside);
      block.clear();
    }
  }
  appendChunk(file, "IEND", {});
  return file;
}

}  // namespace tolvane
