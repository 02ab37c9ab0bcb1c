#pragma once

#include <cstdint>
#include <string_view>

namespace tolvane {

/// What one run of an engine may take of the machine.
struct EngineLimits {
  /// Memory of its own that each of its processes may have, in MiB. Address space would be no
  /// measure: some engines reserve a terabyte of it, of which they use little.
  int memory;
  /// By how much its writable tree may grow, in bytes. A single file cannot become more than a
  /// tenth larger, whatever the engine does.
  std::uint64_t output;

  /// Enough for the largest work that this program gives the engine; on a machine with less memory,
  /// all of that.
  [[nodiscard]] static EngineLimits of(std::string_view engine);

  /// The largest file, in MiB.
  [[nodiscard]] int fileSize() const;
};

}  // namespace tolvane
