#include "platform/images/exif_orientation.h"

#include <cstddef>
#include <cstdint>

#include "platform/images/big_endian.h"

namespace tolvane {

namespace {

/// Reads the numbers of a TIFF structure in its byte order; what lies beyond the end reads as 0.
class TiffNumbers {
 public:
  explicit TiffNumbers(BytesView bytes) : bytes_(bytes) {
    littleEndian_ = bytes.size() > 1 && bytes[0] == 'I' && bytes[1] == 'I';
  }

  [[nodiscard]] std::uint32_t at16(std::size_t offset) const {
    if (offset + 2 > bytes_.size()) {
      return 0;
    }
    const std::uint32_t value = BigEndian::read16(bytes_, offset);
    return littleEndian_ ? (value >> 8U | (value & 0xFFU) << 8U) : value;
  }

  [[nodiscard]] std::uint32_t at32(std::size_t offset) const {
    const std::uint32_t first = at16(offset);
    const std::uint32_t second = at16(offset + 2);
    return littleEndian_ ? second << 16U | first : first << 16U | second;
  }

 private:
  BytesView bytes_;
  bool littleEndian_ = false;
};

}  // namespace

int exifOrientation(BytesView exif) {
  constexpr std::uint32_t tiffMagic = 42;
  constexpr std::uint32_t orientationTag = 0x0112;
  constexpr std::uint32_t shortType = 3;
  constexpr std::size_t entrySize = 12;

  const TiffNumbers numbers(exif);
  if (numbers.at16(2) != tiffMagic) {
    return 1;
  }
  const std::size_t directory = numbers.at32(4);
  const std::uint32_t entries = numbers.at16(directory);
  for (std::uint32_t i = 0; i < entries; ++i) {
    const std::size_t entry = directory + 2 + i * entrySize;
    if (numbers.at16(entry) == orientationTag) {
      const std::uint32_t value = numbers.at16(entry + 8);
      const bool valid = numbers.at16(entry + 2) == shortType && value >= 1 && value <= 8;
      return valid ? static_cast<int>(value) : 1;
    }
  }
  return 1;
}

}  // namespace tolvane
