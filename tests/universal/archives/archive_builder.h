#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Archives as no honest program would write them.
namespace tolvane::support {

struct TarEntry {
  std::string name;  ///< up to 100 bytes
  std::string content = {};
  char type = '0';  ///< file; '1' hard link, '2' symbolic link, '3' device, '5' folder, '6' pipe
  std::string link = {};
};
[[nodiscard]] std::string tar(const std::vector<TarEntry>& entries);

enum class ZipHost { dos = 0, unixSystem = 3 };
constexpr std::uint32_t zipFile = 0100644;
constexpr std::uint32_t zipLink = 0120777;

struct ZipEntry {
  std::string name;
  std::string content = {};
  std::uint32_t mode = zipFile;
  ZipHost host = ZipHost::unixSystem;
  std::string comment = {};
};
/// Nothing is compressed.
[[nodiscard]] std::string zip(const std::vector<ZipEntry>& entries);

/// @param name what the content is called in the file; empty for nothing.
[[nodiscard]] std::string gzip(const std::string& content, const std::string& name = {});
/// A gzip file of `size` zero bytes, or a few more, that declares 10.
[[nodiscard]] std::string gzipBomb(std::uint64_t size);

}  // namespace tolvane::support
