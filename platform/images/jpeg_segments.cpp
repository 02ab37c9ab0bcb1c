#include "platform/images/jpeg_segments.h"

#include <cstddef>
#include <cstring>

#include "platform/images/big_endian.h"

namespace tolvane {

namespace {

constexpr std::uint8_t prefix = 0xFF;

bool isRestart(std::uint8_t marker) {
  return marker >= 0xD0 && marker <= 0xD7;
}

bool standsAlone(std::uint8_t marker) {
  return marker == JpegMarker::startOfImage || marker == JpegMarker::endOfImage;
}

}  // namespace

bool JpegMarker::startsFrame(std::uint8_t marker) {
  constexpr std::uint8_t huffmanTables = 0xC4;
  constexpr std::uint8_t extension = 0xC8;
  constexpr std::uint8_t arithmeticTables = 0xCC;
  return marker >= 0xC0 && marker <= 0xCF && marker != huffmanTables && marker != extension &&
         marker != arithmeticTables;
}

void JpegSegments::skipScanData() {
  while (position_ + 1 < stream_.size()) {
    const void* found = std::memchr(&stream_[position_], prefix, stream_.size() - position_ - 1);
    if (found == nullptr) {
      break;
    }
    position_ = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - stream_.data());
    const std::uint8_t after = stream_[position_ + 1];
    if (after != 0 && after != prefix && !isRestart(after)) {
      return;
    }
    position_ += after == prefix ? 1 : 2;
  }
  position_ = stream_.size();
}

std::optional<JpegSegment> JpegSegments::next() {
  if (inScan_) {
    skipScanData();
  }
  // Fill bytes may stand before any marker but the first, by which a JPEG file is known.
  while (position_ > 0 && position_ + 1 < stream_.size() && stream_[position_] == prefix &&
         stream_[position_ + 1] == prefix) {
    ++position_;
  }
  if (position_ + 1 >= stream_.size() || stream_[position_] != prefix) {
    return std::nullopt;
  }
  const std::uint8_t marker = stream_[position_ + 1];
  const BytesView rest = stream_.subspan(position_);
  if (standsAlone(marker)) {
    position_ += 2;
    inScan_ = false;
    return JpegSegment{marker, rest.first(2), {}};
  }
  if (rest.size() < 4) {
    return std::nullopt;
  }
  const std::size_t length = BigEndian::read16(rest, 2);
  if (length < 2 || rest.size() - 2 < length) {
    return std::nullopt;
  }
  position_ += 2 + length;
  inScan_ = marker == JpegMarker::startOfScan;
  return JpegSegment{marker, rest.first(2 + length), rest.subspan(4, length - 2)};
}

std::optional<Bytes> withEndOfImage(BytesView file) {
  JpegSegments segments(file);
  std::optional<JpegSegment> segment = segments.next();
  if (!segment || segment->marker != JpegMarker::startOfImage) {
    return std::nullopt;
  }
  while (segment && segment->marker != JpegMarker::endOfImage) {
    segment = segments.next();
  }
  if (segment || !segments.endsInScan()) {
    return std::nullopt;
  }
  // Half of the marker may be there.
  const std::size_t end = file.back() == prefix ? file.size() - 1 : file.size();
  Bytes whole(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(end));
  whole.insert(whole.end(), {prefix, JpegMarker::endOfImage});
  return whole;
}

std::optional<JpegFrame> jpegFrame(const JpegSegment& segment) {
  const BytesView payload = segment.payload;
  if (payload.size() < 6) {
    return std::nullopt;
  }
  JpegFrame frame;
  frame.marker = segment.marker;
  frame.precision = payload[0];
  frame.height = static_cast<int>(BigEndian::read16(payload, 1));
  frame.width = static_cast<int>(BigEndian::read16(payload, 3));
  frame.components = payload[5];
  const bool complete = payload.size() == 6U + 3U * payload[5];
  if (!complete || frame.components == 0) {
    return std::nullopt;
  }
  frame.namedRgb =
      frame.components == 3 && payload[6] == 'R' && payload[9] == 'G' && payload[12] == 'B';
  return frame;
}

}  // namespace tolvane
