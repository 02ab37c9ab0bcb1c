#include "platform/images/jpeg_photo.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>

#include "platform/files/file_system.h"
#include "platform/images/color_profile.h"
#include "platform/images/exif_orientation.h"
#include "platform/images/jpeg_segments.h"

namespace tolvane {

namespace {

using namespace std::string_view_literals;

/// A profile that is cut into numbered APP2 segments.
class ProfileParts {
 public:
  void add(BytesView payload) {
    constexpr std::string_view name = "ICC_PROFILE\0"sv;
    if (!startsWith(payload, name) || payload.size() < name.size() + 2) {
      return;
    }
    const std::uint8_t number = payload[name.size()];
    announced_ = payload[name.size() + 1];
    parts_.emplace(number, payload.subspan(name.size() + 2));
  }

  /// @return empty when parts are missing.
  [[nodiscard]] Bytes joined() const {
    const bool complete = !parts_.empty() && parts_.size() == announced_ &&
                          parts_.begin()->first == 1 && parts_.rbegin()->first == announced_;
    Bytes profile;
    for (const auto& [number, part] : parts_) {
      if (complete) {
        profile.insert(profile.end(), part.begin(), part.end());
      }
    }
    return profile;
  }

 private:
  std::map<std::uint8_t, BytesView> parts_;
  std::size_t announced_ = 0;
};

/// Gathers a photo segment by segment.
class PhotoBuilder {
 public:
  /// @return whether a photo can still come of it.
  bool add(const JpegSegment& segment) {
    if (segment.payload.empty() && segment.whole.size() == 2) {
      return false;  // a picture that starts or ends again before its first scan
    }
    if (JpegMarker::startsFrame(segment.marker)) {
      return addFrame(segment);
    }
    if (segment.marker == JpegMarker::app1) {
      addExif(segment.payload);
      return true;
    }
    if (segment.marker == JpegMarker::app2) {
      profile_.add(segment.payload);
    } else if (segment.marker == JpegMarker::app14 && startsWith(segment.payload, "Adobe"sv) &&
               segment.payload.size() >= 12) {
      adobeTransform_ = segment.payload[11];
    }
    keep(segment.whole);
    return true;
  }

  void keep(BytesView bytes) { photo_.data.insert(photo_.data.end(), bytes.begin(), bytes.end()); }

  [[nodiscard]] std::optional<JpegPhoto> finish() && {
    if (!frame_ || !hasClearColors()) {
      return std::nullopt;
    }
    photo_.width = frame_->width;
    photo_.height = frame_->height;
    photo_.components = frame_->components;
    photo_.orientation = orientation_.value_or(1);
    photo_.colorProfile = profile_.joined();
    if (!ColorProfile::fits(photo_.colorProfile, photo_.components)) {
      photo_.colorProfile.clear();
    }
    return std::move(photo_);
  }

 private:
  /// Huffman-coded baseline, extended and progressive frames are what PDF readers decode.
  bool addFrame(const JpegSegment& segment) {
    constexpr std::uint8_t baseline = 0xC0;
    constexpr std::uint8_t progressive = 0xC2;
    const std::optional<JpegFrame> frame = jpegFrame(segment);
    const bool usable = !frame_ && frame && frame->width > 0 && frame->height > 0 &&
                        frame->precision == 8 && frame->marker >= baseline &&
                        frame->marker <= progressive &&
                        (frame->components == 1 || frame->components == 3);
    frame_ = frame;
    keep(segment.whole);
    return usable;
  }

  void addExif(BytesView payload) {
    constexpr std::string_view name = "Exif\0\0"sv;
    if (!orientation_ && startsWith(payload, name)) {
      orientation_ = exifOrientation(payload.subspan(name.size()));
    }
  }

  /// Readers must not have to guess whether three components are RGB or YCbCr.
  [[nodiscard]] bool hasClearColors() const {
    constexpr int lastThreeComponentTransform = 1;  // 0 is RGB, 1 YCbCr
    return frame_->components == 1 ||
           (adobeTransform_ ? *adobeTransform_ <= lastThreeComponentTransform : !frame_->namedRgb);
  }

  JpegPhoto photo_;
  std::optional<JpegFrame> frame_;
  std::optional<int> orientation_;
  std::optional<int> adobeTransform_;
  ProfileParts profile_;
};

/// From the first scan to the end of the picture; what cameras append behind it is left out.
/// @return nullopt when the picture has no end.
std::optional<BytesView> scansFrom(const JpegSegment& firstScan, JpegSegments& segments) {
  const std::uint8_t* start = firstScan.whole.data();
  while (const std::optional<JpegSegment> segment = segments.next()) {
    if (segment->marker == JpegMarker::endOfImage) {
      return BytesView(start, segment->whole.data() + segment->whole.size());
    }
    if (segment->marker == JpegMarker::startOfImage || JpegMarker::startsFrame(segment->marker)) {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<JpegPhoto> jpegPhoto(BytesView file) {
  JpegSegments segments(file);
  const std::optional<JpegSegment> first = segments.next();
  if (!first || first->marker != JpegMarker::startOfImage) {
    return std::nullopt;
  }
  PhotoBuilder builder;
  builder.keep(first->whole);
  std::optional<JpegSegment> segment = segments.next();
  while (segment && segment->marker != JpegMarker::startOfScan) {
    if (!builder.add(*segment)) {
      return std::nullopt;
    }
    segment = segments.next();
  }
  const std::optional<BytesView> scans = segment ? scansFrom(*segment, segments) : std::nullopt;
  if (!scans) {
    return std::nullopt;
  }
  builder.keep(*scans);
  return std::move(builder).finish();
}

std::optional<JpegPhoto> readJpegPhoto(const std::filesystem::path& file) {
  const Bytes content = FileSystem::readAll(file);
  const std::optional<Bytes> completed = withEndOfImage(content);
  return jpegPhoto(completed ? *completed : content);
}

}  // namespace tolvane
