#include "universal/toolchain/engine_limits.h"

#include <algorithm>
#include <unistd.h>

#include "engine/primitives/limits.h"

namespace tolvane {

namespace {

constexpr int gigabyte = 1024;  // MiB
constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;

struct Need {
  std::string_view engine;
  int memory;
};

// Encoding a film of 3840 by 2160 takes 1.7 GB on two processors, and more with each further one;
// a text of a megabyte takes pandoc half a gigabyte, pictures of 24 megapixels as much.
constexpr Need needs[] = {{"ffmpeg", 8 * gigabyte},
                          {"soffice", 8 * gigabyte},
                          {"pandoc", 4 * gigabyte},
                          {"magick", 4 * gigabyte},
                          {"7zz", 4 * gigabyte},
                          {"qpdf", 4 * gigabyte}};
constexpr int others = 2 * gigabyte;

/// ImageMagick holds up to three versions of a picture of 80 megapixels in files of the same
/// folder.
std::uint64_t scratchOf(std::string_view engine) {
  return engine == "magick" ? 2 * gigabyte * mebibyte : 0;
}

int machinesMemory() {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageSize = ::sysconf(_SC_PAGESIZE);
  return pages > 0 && pageSize > 0
             ? static_cast<int>(static_cast<std::uint64_t>(pages) *
                                static_cast<std::uint64_t>(pageSize) / mebibyte)
             : others;
}

}  // namespace

EngineLimits EngineLimits::of(std::string_view engine) {
  const auto* const found =
      std::find_if(std::begin(needs), std::end(needs), [engine](const Need& need) {
        return need.engine == engine;
      });
  const int memory = found != std::end(needs) ? found->memory : others;
  return {std::min(memory, machinesMemory()), Limits::maxOutputBytes + scratchOf(engine)};
}

int EngineLimits::fileSize() const {
  return static_cast<int>((output + output / 10) / mebibyte) + 1;
}

}  // namespace tolvane
