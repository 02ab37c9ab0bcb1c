#include "tests/universal/archives/archive_builder.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "tests/support/binary_numbers.h"

namespace tolvane::support {

namespace {

std::string octal(std::uint64_t value, int digits) {
  std::array<char, 24> text = {};
  std::snprintf(text.data(), text.size(), "%0*lo", digits, value);
  return text.data();
}

std::string tarHeader(const TarEntry& entry) {
  constexpr std::size_t blockSize = 512;
  constexpr std::size_t sumAt = 148;
  std::string header(blockSize, '\0');
  const auto put = [&header](std::size_t at, const std::string& text) {
    header.replace(at, text.size(), text);
  };
  put(0, entry.name);
  put(100, octal(entry.type == '5' ? 0755 : 0644, 7));
  put(124, octal(entry.content.size(), 11));
  put(136, octal(0, 11));
  put(sumAt, "        ");
  put(156, std::string(1, entry.type) + entry.link);
  put(257, std::string("ustar\00000", 8));
  std::uint64_t sum = 0;
  for (const char byte : header) {
    sum += static_cast<unsigned char>(byte);
  }
  put(sumAt, octal(sum, 6));
  return header;
}

/// What the two records of a ZIP entry have in common.
std::string zipFields(const ZipEntry& entry) {
  return littleEndian(20, 2) + littleEndian(0, 8) + littleEndian(crc32(entry.content), 4) +
         littleEndian(entry.content.size(), 4) + littleEndian(entry.content.size(), 4) +
         littleEndian(entry.name.size(), 2) + littleEndian(0, 2);
}

const char* const gzipStart = "\x1F\x8B\x08";

}  // namespace

std::string tar(const std::vector<TarEntry>& entries) {
  constexpr std::size_t blockSize = 512;
  std::string archive;
  for (const TarEntry& entry : entries) {
    archive += tarHeader(entry) + entry.content;
    archive.resize((archive.size() + blockSize - 1) / blockSize * blockSize);
  }
  return archive + std::string(2 * blockSize, '\0');
}

std::string zip(const std::vector<ZipEntry>& entries) {
  std::string archive;
  std::string directory;
  for (const ZipEntry& entry : entries) {
    const std::size_t at = archive.size();
    archive += "PK\3\4" + zipFields(entry) + entry.name + entry.content;
    directory += "PK\1\2" + littleEndian(20, 1) +
                 littleEndian(static_cast<std::uint64_t>(entry.host), 1) + zipFields(entry) +
                 littleEndian(entry.comment.size(), 2) + littleEndian(0, 4) +
                 littleEndian(std::uint64_t{entry.mode} << 16, 4) + littleEndian(at, 4) +
                 entry.name + entry.comment;
  }
  return archive + directory + "PK\5\6" + littleEndian(0, 4) + littleEndian(entries.size(), 2) +
         littleEndian(entries.size(), 2) + littleEndian(directory.size(), 4) +
         littleEndian(archive.size(), 4) + littleEndian(0, 2);
}

std::string gzip(const std::string& content, const std::string& name) {
  std::string archive = gzipStart + littleEndian(name.empty() ? 0 : 8, 1) + littleEndian(0, 6);
  archive += name.empty() ? "" : name + littleEndian(0, 1);
  constexpr std::size_t mostStored = 0xFFFF;
  for (std::size_t at = 0; at < content.size(); at += mostStored) {
    const std::size_t size = std::min(mostStored, content.size() - at);
    const bool isLast = at + size == content.size();
    archive += littleEndian(isLast ? 1 : 0, 1) + littleEndian(size, 2) + littleEndian(~size, 2);
    archive.append(content, at, size);
  }
  return archive + littleEndian(crc32(content), 4) + littleEndian(content.size(), 4);
}

std::string gzipBomb(std::uint64_t size) {
  // One block with the fixed codes: a zero byte, then "258 bytes from one before", 13 bits each.
  std::string archive = gzipStart + littleEndian(0, 7);
  unsigned waiting = 0;
  int count = 0;
  const auto put = [&](unsigned code, int bits) {  // the first bit of the code goes lowest
    waiting |= code << count;
    for (count += bits; count >= 8; count -= 8) {
      archive += static_cast<char>(waiting & 0xFF);
      waiting >>= 8;
    }
  };
  put(0b011, 3);       // the last block, fixed codes
  put(0b00001100, 8);  // 0x00, whose code is 00110000
  constexpr std::uint64_t repeated = 258;
  for (std::uint64_t written = 1; written < size; written += repeated) {
    put(0b10100011, 8);  // 258 bytes, whose code is 11000101
    put(0, 5);
  }
  put(0, 7);  // the end of the block
  put(0, 7);  // to the byte
  return archive + littleEndian(0, 4) + littleEndian(10, 4);
}

}  // namespace tolvane::support
