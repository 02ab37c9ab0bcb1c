#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/files/bytes.h"

namespace tolvane {

namespace JpegMarker {
inline constexpr std::uint8_t startOfImage = 0xD8;
inline constexpr std::uint8_t endOfImage = 0xD9;
inline constexpr std::uint8_t startOfScan = 0xDA;
inline constexpr std::uint8_t app1 = 0xE1;   ///< EXIF and XMP
inline constexpr std::uint8_t app2 = 0xE2;   ///< ICC profiles, among others
inline constexpr std::uint8_t app14 = 0xEE;  ///< Adobe's note on the colour transform
/// Whether the segment describes the frame: its size, precision and components.
[[nodiscard]] bool startsFrame(std::uint8_t marker);
}  // namespace JpegMarker

struct JpegSegment {
  std::uint8_t marker = 0;
  BytesView whole;    ///< from its 0xFF, without fill bytes before it
  BytesView payload;  ///< without marker and length
};

/// Walks the segments of a JPEG stream in their order. Every access is checked against the bytes at
/// hand.
class JpegSegments {
 public:
  /// @param stream not owned.
  explicit JpegSegments(BytesView stream) : stream_(stream) {}

  /// The next segment; a segment after a scan is found behind the scan's data. startOfImage and
  /// endOfImage come with an empty payload.
  /// @return nullopt when the stream is damaged here or ends.
  [[nodiscard]] std::optional<JpegSegment> next();

  /// Whether next() found no segment because the stream ended within the data of a scan.
  [[nodiscard]] bool endsInScan() const { return inScan_ && position_ == stream_.size(); }

 private:
  void skipScanData();

  BytesView stream_;
  std::size_t position_ = 0;
  bool inScan_ = false;
};

/// A file that stops within the data of its last scan, completed by the marker that should follow.
/// Every viewer shows such a file when it lacks nothing else.
/// @return nullopt when the file has its end, or stops elsewhere.
[[nodiscard]] std::optional<Bytes> withEndOfImage(BytesView file);

/// What a frame segment says.
struct JpegFrame {
  std::uint8_t marker = 0;
  int precision = 0;
  int width = 0;
  int height = 0;
  int components = 0;
  bool namedRgb = false;  ///< the three components are called R, G and B
};

/// @return nullopt when the segment is too short for what it announces, or announces no components.
/// Sides may be 0.
[[nodiscard]] std::optional<JpegFrame> jpegFrame(const JpegSegment& segment);

}  // namespace tolvane
