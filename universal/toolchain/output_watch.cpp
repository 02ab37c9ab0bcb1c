#include "universal/toolchain/output_watch.h"

#include <algorithm>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <utility>

#include "universal/toolchain/engine_failure.h"

namespace tolvane {

namespace {

/// @return bytes in the files of the tree; nullopt when it was not the time to look.
std::optional<std::uint64_t> size(PacedWalk& walk) {
  std::uint64_t total = 0;
  const bool hasWalked = walk([&total](const OpenFolder& folder, const OpenFolder::Entry& entry) {
    struct stat status = {};
    if (!entry.isFolder &&
        ::fstatat(folder.descriptor(), entry.name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
      total += static_cast<std::uint64_t>(std::max<off_t>(status.st_size, 0));
    }
  });
  return hasWalked ? std::optional(total) : std::nullopt;
}

}  // namespace

OutputWatch::OutputWatch(std::filesystem::path root, std::uint64_t limit)
    : root_(std::move(root)), limit_(limit), walk_(root_) {
  before_ = size(walk_).value_or(0);
}

void OutputWatch::operator()() {
  const std::optional<std::uint64_t> now = size(walk_);
  if (now && *now > before_ + limit_) {
    EngineFailure::tooMuchOutput();
  }
  if (now && EngineFailure::isFull(root_)) {
    EngineFailure::fullDisk();
  }
}

}  // namespace tolvane
