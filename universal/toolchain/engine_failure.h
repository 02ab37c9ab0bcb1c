#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/files/bytes.h"
#include "universal/toolchain/engine_limits.h"

/// Why an engine failed, as a sentence. Engines end with the same status for a broken file as for a
/// full disk.
namespace tolvane::EngineFailure {

/// How a run ended.
struct Run {
  std::string engine;
  int status;
  const Bytes& printed;
  std::optional<std::string> known;  ///< what the caller makes of what was printed
  std::uint64_t peakMemory;          ///< bytes, of its largest process
  EngineLimits limits;
  std::filesystem::path folder;  ///< where it was to write
};

/// @throws ConversionFailure in every case.
[[noreturn]] void explain(const Run& run);

[[noreturn]] void tooMuchOutput();
[[noreturn]] void fullDisk();

/// @return whether nothing can be written there any more.
[[nodiscard]] bool isFull(const std::filesystem::path& folder);

}  // namespace tolvane::EngineFailure
