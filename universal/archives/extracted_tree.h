#pragma once

#include <filesystem>

#include "engine/primitives/cancellation_token.h"
#include "universal/toolchain/paced_walk.h"

namespace tolvane::ExtractedTree {

/// Holds against what extraction wrote: only files and folders, no links, at most 512 MiB. A tree
/// that cannot be walked at all passes; there is nothing to be made of it. What its owner may not
/// read becomes readable to him, folders searchable too; no right is taken away.
/// @throws ConversionFailure when it is unsafe or the job is cancelled; PlatformError when a part
/// of it cannot be read.
void check(const std::filesystem::path& root, const CancellationToken& token);

/// The same check while the tree is still being written, changing nothing, because a few bytes of
/// an archive can expand until the disk is full. To be called again and again.
class Watch {
 public:
  /// @param token not owned.
  Watch(std::filesystem::path root, const CancellationToken& token);

  /// @throws ConversionFailure as check() does.
  void operator()();

 private:
  PacedWalk walk_;
  const CancellationToken* token_;
};

}  // namespace tolvane::ExtractedTree
