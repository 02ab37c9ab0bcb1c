#include <cstdint>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/images/image_decoder.h"
#include "platform/images/image_encoder.h"
#include "tests/support/image_samples.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using namespace std::string_literals;

/// A segment with its marker and length.
std::string segment(std::uint8_t marker, const std::string& payload) {
  const std::size_t length = payload.size() + 2;
  return std::string{'\xFF',
                     static_cast<char>(marker),
                     static_cast<char>(length >> 8U),
                     static_cast<char>(length & 0xFFU)} +
         payload;
}

std::string exif(char orientation) {
  return segment(0xE1,
                 "Exif\0\0MM\0\x2A\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0"s + orientation +
                     "\0\0\0\0\0\0"s);
}

std::string exifLittleEndian(char orientation) {
  return segment(0xE1,
                 "Exif\0\0II\x2A\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0"s + orientation +
                     "\0\0\0\0\0\0\0"s);
}

/// The smallest block that passes for a profile of the colour space.
std::string profile(const std::string& space) {
  return std::string(16, '\0') + space + std::string(16, '\0') + "acsp" + std::string(96, '\0');
}

std::string profilePart(char number, char count, const std::string& content) {
  return segment(0xE2, "ICC_PROFILE\0"s + number + count + content);
}

std::string jpeg(PixelLayout layout = PixelLayout::rgb) {
  const Bytes file = ImageEncoder::jpeg(support::smooth(24, 10, layout), 0.9);
  return std::string(asText(file));
}

/// With more segments right behind the start of the image.
std::string with(const std::string& segments, const std::string& file = jpeg()) {
  return file.substr(0, 2) + segments + file.substr(2);
}

/// With one byte of the frame segment replaced, counted from its marker.
std::string withFrameByte(std::size_t offset, char value) {
  std::string file = jpeg();
  file[file.find("\xFF\xC0") + offset] = value;
  return file;
}

std::optional<JpegPhoto> photoOf(const std::string& content) {
  const support::TemporaryFolder folder;
  return readJpegPhoto(folder.write("photo", content));
}

TEST(JpegPhotoRefusalTest, GivesNothing) {
  const std::pair<const char*, std::string> cases[] = {
      {"empty", ""s},
      {"text", "a text"s},
      {"start only", "\xFF\xD8"s},
      {"filled before its start", "\xFF"s + jpeg()},
      {"cut in the tables", jpeg().substr(0, 40)},
      {"12 bits", withFrameByte(4, 12)},
      {"lossless", withFrameByte(1, '\xC3')},
      {"arithmetic", withFrameByte(1, '\xC9')},
      {"four components announced", withFrameByte(9, 4)},
      {"width 0", withFrameByte(8, 0)},
      {"segment beyond the end", with("\xFF\xE5\xFF\xFF"s, jpeg().substr(0, 99))},
      {"segment shorter than its length", with("\xFF\xE5\0\x01"s)},
      {"no marker", with("junk")},
      {"ends before the scan", with("\xFF\xD9")},
      {"starts again", with("\xFF\xD8")},
      {"two frames", with(segment(0xC0, "\x08\0\x08\0\x08\x01\x01\x11\0"s))},
      {"four-component transform", with(segment(0xEE, "Adobe\0\x64\0\0\0\0\x02"s))}};
  for (const auto& [label, content] : cases) {
    EXPECT_FALSE(photoOf(content)) << label;
  }
}

TEST(JpegPhotoTest, GetsTheEndThatItLacks) {
  for (const std::size_t missing : {1U, 2U}) {
    const auto photo = photoOf(jpeg().substr(0, jpeg().size() - missing));
    ASSERT_TRUE(photo);
    EXPECT_EQ(asText(photo->data), jpeg());
  }
}

TEST(JpegPhotoTest, ReadsSizeAndComponents) {
  for (const PixelLayout layout : {PixelLayout::rgb, PixelLayout::grey}) {
    const auto photo = photoOf(jpeg(layout));
    ASSERT_TRUE(photo);
    EXPECT_EQ(std::pair(photo->width, photo->height), std::pair(24, 10));
    EXPECT_EQ(photo->components, layout == PixelLayout::grey ? 1 : 3);
    EXPECT_EQ(photo->orientation, 1);
    EXPECT_TRUE(photo->colorProfile.empty());
    EXPECT_EQ(asText(photo->data), jpeg(layout));
  }
}

TEST(JpegPhotoTest, LeavesExifAndAppendixOut) {
  const std::string comment = segment(0xFE, "kept");
  const auto photo = photoOf(with(exif(6) + comment) + "appended film");
  ASSERT_TRUE(photo);
  EXPECT_EQ(asText(photo->data), with(comment));
  EXPECT_EQ(photo->orientation, 6);
}

TEST(JpegPhotoTest, ReadsTheOrientationInBothByteOrders) {
  for (char orientation = 1; orientation <= 8; ++orientation) {
    EXPECT_EQ(photoOf(with(exif(orientation)))->orientation, orientation);
    EXPECT_EQ(photoOf(with(exifLittleEndian(orientation)))->orientation, orientation);
  }
  EXPECT_EQ(photoOf(with(exif(0)))->orientation, 1);
  EXPECT_EQ(photoOf(with(exif(9)))->orientation, 1);
  EXPECT_EQ(photoOf(with(segment(0xE1, exif(6).substr(4, 20))))->orientation, 1) << "cut short";
  EXPECT_EQ(photoOf(with(segment(0xE1, "Exif\0\0MM\0\x2A\xFF\xFF\xFF\xFF"s)))->orientation, 1);
}

TEST(JpegPhotoTest, JoinsTheProfileByItsNumbers) {
  const std::string whole = profile("RGB ");
  const std::string first = profilePart(1, 2, whole.substr(0, 50));
  const std::string second = profilePart(2, 2, whole.substr(50));
  EXPECT_EQ(asText(photoOf(with(second + first))->colorProfile), whole);
  EXPECT_TRUE(photoOf(with(first))->colorProfile.empty()) << "a part is missing";
  EXPECT_TRUE(photoOf(with(profilePart(1, 1, profile("CMYK"))))->colorProfile.empty());
  EXPECT_TRUE(photoOf(with(profilePart(1, 1, "short")))->colorProfile.empty());
  EXPECT_FALSE(photoOf(with(profilePart(1, 1, profile("GRAY")), jpeg(PixelLayout::grey)))
                   ->colorProfile.empty());
}

}  // namespace
}  // namespace tolvane
