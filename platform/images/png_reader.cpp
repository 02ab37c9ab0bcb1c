#include "platform/images/png_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>

#include "platform/images/big_endian.h"
#include "platform/images/exif_orientation.h"
#include "platform/images/image_header.h"
#include "platform/images/image_limits.h"
#include "platform/images/png_filters.h"

namespace tolvane {

namespace {

constexpr std::size_t signatureSize = 8;

struct Chunk {
  std::string_view type;
  BytesView content;
};

/// Walks the chunks, each verified by its checksum.
class Chunks {
 public:
  explicit Chunks(BytesView file) : rest_(file.subspan(signatureSize)) {}

  /// @return nullopt when the file is damaged here or ends.
  std::optional<Chunk> next() {
    constexpr std::size_t frame = 12;  // length, type and checksum
    if (rest_.size() < frame) {
      return std::nullopt;
    }
    const std::size_t length = BigEndian::read32(rest_, 0);
    if (length > rest_.size() - frame ||
        crc32_gzip_refl(0, &rest_[4], length + 4) != BigEndian::read32(rest_, length + 8)) {
      return std::nullopt;
    }
    const Chunk chunk{asText(rest_.subspan(4, 4)), rest_.subspan(8, length)};
    rest_ = rest_.subspan(length + frame);
    return chunk;
  }

 private:
  BytesView rest_;
};

/// Fills a bitmap from the compressed stream of its filtered rows.
class RowStream {
 public:
  /// @param bitmap of its final size; not owned.
  explicit RowStream(Bitmap& bitmap)
      : bitmap_(bitmap), state_(std::make_unique<inflate_state>()), zeros_(bitmap.stride()) {
    constexpr std::size_t cached = 262144;
    block_.resize(storedSize() * std::max<std::size_t>(1, cached / storedSize()));
    isal_inflate_init(state_.get());
    state_->crc_flag = ISAL_ZLIB;
  }

  /// @return false when the stream is damaged or holds too much.
  bool add(BytesView compressed) {
    Bytes input(compressed.begin(), compressed.end());  // the library asks for writable bytes
    state_->next_in = input.data();
    state_->avail_in = static_cast<std::uint32_t>(input.size());
    do {
      state_->next_out = &block_[filled_];
      state_->avail_out = static_cast<std::uint32_t>(block_.size() - filled_);
      if (isal_inflate(state_.get()) != ISAL_DECOMP_OK) {
        return false;
      }
      filled_ = block_.size() - state_->avail_out;
      if (!takeRows()) {
        return false;
      }
    } while (!ended() && (state_->avail_in > 0 || state_->avail_out == 0));
    return state_->avail_in == 0;
  }

  /// Whether every row came and the checksum behind them was right.
  [[nodiscard]] bool isComplete() const { return ended() && row_ == bitmap_.height; }

 private:
  [[nodiscard]] bool ended() const { return state_->block_state == ISAL_BLOCK_FINISH; }
  [[nodiscard]] std::size_t storedSize() const { return bitmap_.stride() + 1; }

  bool takeRows() {
    std::size_t taken = 0;
    for (; filled_ - taken >= storedSize() && row_ < bitmap_.height; taken += storedSize()) {
      if (!takeRow(&block_[taken])) {
        return false;
      }
    }
    std::memmove(block_.data(), block_.data() + taken, filled_ - taken);
    filled_ -= taken;
    return row_ < bitmap_.height || filled_ == 0;
  }

  bool takeRow(const std::uint8_t* stored) {
    const std::size_t stride = bitmap_.stride();
    std::uint8_t* out = &bitmap_.pixels[static_cast<std::size_t>(row_) * stride];
    const std::uint8_t* above = row_ == 0 ? zeros_.data() : out - stride;
    ++row_;
    return PngFilters::undo(stored[0],
                            {out, stride},
                            {stored + 1, stride},
                            {above, stride},
                            bytesPerPixel(bitmap_.layout));
  }

  Bitmap& bitmap_;
  std::unique_ptr<inflate_state> state_;
  Bytes zeros_;
  Bytes block_;
  std::size_t filled_ = 0;
  int row_ = 0;
};

std::optional<PixelLayout> plainLayout(BytesView header) {
  const bool plain = header[8] == 8 && header[10] == 0 && header[11] == 0 && header[12] == 0;
  switch (plain ? header[9] : 0xFF) {
    case 0:
      return PixelLayout::grey;
    case 2:
      return PixelLayout::rgb;
    case 6:
      return PixelLayout::rgba;
    default:
      return std::nullopt;
  }
}

/// Whether the chunk leaves the pixels, in the sense in which we show them, as they are.
bool isWithoutEffect(const Chunk& chunk) {
  constexpr std::array<std::string_view, 12> known = {"sRGB",
                                                      "gAMA",
                                                      "cHRM",
                                                      "pHYs",
                                                      "tEXt",
                                                      "zTXt",
                                                      "iTXt",
                                                      "tIME",
                                                      "bKGD",
                                                      "sBIT",
                                                      "sPLT",
                                                      "hIST"};
  return std::find(known.begin(), known.end(), chunk.type) != known.end() ||
         (chunk.type == "eXIf" && exifOrientation(chunk.content) == 1);
}

/// @param bitmap of its final size.
bool readRows(Chunks& chunks, Bitmap& bitmap) {
  RowStream rows(bitmap);
  while (const std::optional<Chunk> chunk = chunks.next()) {
    if (chunk->type == "IEND") {
      return rows.isComplete();
    }
    const bool fine = chunk->type == "IDAT" ? rows.add(chunk->content) : isWithoutEffect(*chunk);
    if (!fine) {
      return false;
    }
  }
  return false;
}

}  // namespace

std::optional<Bitmap> readPlainPng(BytesView file, int maxDimension) {
  const std::optional<ImageHeader> header = imageHeader(file);
  if (!header || header->extension != "png" ||
      std::max(header->width, header->height) > maxDimension ||
      !isWithinDecodingLimit(header->width, header->height)) {
    return std::nullopt;
  }
  Chunks chunks(file);
  const std::optional<Chunk> first = chunks.next();
  const std::optional<PixelLayout> layout = first ? plainLayout(first->content) : std::nullopt;
  if (!layout) {
    return std::nullopt;
  }
  Bitmap bitmap{header->width, header->height, *layout, {}};
  bitmap.pixels.resize(bitmap.stride() * static_cast<std::size_t>(bitmap.height));
  return readRows(chunks, bitmap) ? std::optional(std::move(bitmap)) : std::nullopt;
}

}  // namespace tolvane
