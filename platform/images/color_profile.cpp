#include "platform/images/color_profile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/images/big_endian.h"

namespace tolvane::ColorProfile {

namespace {

using BigEndian::read16;
using BigEndian::read32;

constexpr std::size_t headerSize = 128;

constexpr std::uint32_t fourLetters(const char (&text)[5]) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) {
    value = value << 8U | static_cast<std::uint8_t>(text[i]);
  }
  return value;
}

/// The data of a tag, from its type on; empty when there is no such tag inside the profile.
BytesView tagData(BytesView profile, std::uint32_t signature) {
  constexpr std::size_t entrySize = 12;
  const std::size_t listed = read32(profile, headerSize);
  const std::size_t present = (profile.size() - headerSize - 4) / entrySize;
  for (std::size_t i = 0; i < std::min(listed, present); ++i) {
    const std::size_t entry = headerSize + 4 + i * entrySize;
    if (read32(profile, entry) == signature) {
      const std::size_t offset = read32(profile, entry + 4);
      const std::size_t size = read32(profile, entry + 8);
      const bool inside = offset <= profile.size() && size <= profile.size() - offset;
      return inside ? profile.subspan(offset, size) : BytesView();
    }
  }
  return {};
}

double fixedPoint(BytesView bytes, std::size_t at) {
  return static_cast<std::int32_t>(read32(bytes, at)) / 65536.0;
}

bool isPrimary(BytesView tag, const std::array<double, 3>& expected) {
  constexpr double tolerance = 0.003;
  if (tag.size() < 20 || read32(tag, 0) != fourLetters("XYZ ")) {
    return false;
  }
  for (std::size_t i = 0; i < 3; ++i) {
    if (std::abs(fixedPoint(tag, 8 + 4 * i) - expected.at(i)) > tolerance) {
      return false;
    }
  }
  return true;
}

double standardCurve(double x) {
  return x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
}

/// A tone curve stored as a table, at `x` between 0 and 1.
std::optional<double> tableCurve(BytesView tag, double x) {
  const std::size_t count = read32(tag, 8);
  if (count < 2 || count > (tag.size() - 12) / 2) {
    return std::nullopt;
  }
  const double position = x * static_cast<double>(count - 1);
  const std::size_t index = std::min(static_cast<std::size_t>(position), count - 2);
  const double low = read16(tag, 12 + 2 * index);
  const double high = read16(tag, 14 + 2 * index);
  return (low + (high - low) * (position - static_cast<double>(index))) / 65535.0;
}

/// A tone curve stored as the parameters g, a, b, c and d of (ax + b)^g, or cx below d.
std::optional<double> parametricCurve(BytesView tag, double x) {
  constexpr std::uint32_t powerAndLine = 3;
  if (tag.size() < 32 || read16(tag, 8) != powerAndLine) {
    return std::nullopt;
  }
  const auto parameter = [&](std::size_t i) { return fixedPoint(tag, 12 + 4 * i); };
  return x >= parameter(4) ? std::pow(parameter(1) * x + parameter(2), parameter(0))
                           : parameter(3) * x;
}

bool isStandardCurve(BytesView tag) {
  constexpr double tolerance = 0.003;
  if (tag.size() < 12) {
    return false;
  }
  const std::uint32_t type = read32(tag, 0);
  for (const double x : {0.02, 0.2, 0.4, 0.6, 0.8, 1.0}) {
    const std::optional<double> value = type == fourLetters("curv")   ? tableCurve(tag, x)
                                        : type == fourLetters("para") ? parametricCurve(tag, x)
                                                                      : std::nullopt;
    if (!value || !(std::abs(*value - standardCurve(x)) <= tolerance)) {
      return false;
    }
  }
  return true;
}

bool isProfile(BytesView profile) {
  return profile.size() >= headerSize + 4 && read32(profile, 36) == fourLetters("acsp");
}

}  // namespace

bool fits(BytesView profile, int components) {
  const std::uint32_t space = components == 1 ? fourLetters("GRAY") : fourLetters("RGB ");
  return isProfile(profile) && read32(profile, 16) == space;
}

bool isStandardRgb(BytesView profile) {
  // A lookup table takes precedence over primaries and curves and may say something else.
  if (!fits(profile, 3) || !tagData(profile, fourLetters("A2B0")).empty()) {
    return false;
  }
  // The primaries of sRGB adapted to the D50 white of the profile connection space.
  return isPrimary(tagData(profile, fourLetters("rXYZ")), {0.4361, 0.2225, 0.0139}) &&
         isPrimary(tagData(profile, fourLetters("gXYZ")), {0.3851, 0.7169, 0.0971}) &&
         isPrimary(tagData(profile, fourLetters("bXYZ")), {0.1431, 0.0606, 0.7141}) &&
         isStandardCurve(tagData(profile, fourLetters("rTRC"))) &&
         isStandardCurve(tagData(profile, fourLetters("gTRC"))) &&
         isStandardCurve(tagData(profile, fourLetters("bTRC")));
}

}  // namespace tolvane::ColorProfile
