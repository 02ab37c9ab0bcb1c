#pragma once

#include <cstdint>
#include <filesystem>

#include "universal/toolchain/paced_walk.h"

namespace tolvane {

/// Sees that an engine does not fill the disk: a few bytes of input can become any amount of
/// output. To be called again and again while the engine runs.
class OutputWatch {
 public:
  /// @param root the tree that the engine may write; what it holds now does not count.
  /// @param limit bytes that may be added.
  OutputWatch(std::filesystem::path root, std::uint64_t limit);

  /// @throws ConversionFailure when too much was added, or no room is left on the disk.
  void operator()();

 private:
  std::filesystem::path root_;
  std::uint64_t limit_;
  PacedWalk walk_;
  std::uint64_t before_ = 0;
};

}  // namespace tolvane
