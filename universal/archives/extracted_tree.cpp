#include "universal/archives/extracted_tree.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/folder_walk.h"
#include "platform/files/platform_error.h"

namespace tolvane::ExtractedTree {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int restBetweenWalks = 20;  // times as long as the walk itself

enum class Extraction { running, finished };

void refuseUnless(bool isSafe) {
  if (!isSafe) {
    throw ConversionFailure::message("Unsafe archive contents were rejected.");
  }
}

/// Archives can take their owner's right to read what was in them, and packing it needs that.
/// @param mode of a folder or a regular file.
void makeReadable(int folder, const char* name, mode_t mode) {
  const mode_t needed = S_ISDIR(mode) ? S_IRUSR | S_IXUSR : S_IRUSR;
  if ((mode & needed) != needed && ::fchmodat(folder, name, (mode & ALLPERMS) | needed, 0) != 0) {
    throw PlatformError::fromErrno("read", name, errno);
  }
}

/// One pass over a tree. Items are looked at from their folder, because finding each from the root
/// takes the kernel twice as long.
class Pass {
 public:
  Pass(const CancellationToken& token, Extraction extraction)
      : token_(token), extraction_(extraction) {}

  /// @throws PlatformError when a part of it cannot be read; not while extraction is running, when
  /// folders may come, go and be closed.
  void over(const OpenFolder& root);

 private:
  void visit(const OpenFolder& folder, const OpenFolder::Entry& item);

  const CancellationToken& token_;
  Extraction extraction_;
  std::uint64_t total_ = 0;  // bytes
};

void Pass::over(const OpenFolder& root) {
  FolderWalk walk(root.descriptor());
  while (const auto path = walk.next()) {
    auto folder = walk.open(*path);
    if (!folder && extraction_ == Extraction::finished) {
      throw PlatformError::fromErrno("read", *path, errno);
    }
    while (const auto item = folder ? folder->next() : std::nullopt) {
      token_.check();
      visit(*folder, *item);
      if (item->isFolder) {
        walk.add(*path, item->name);
      }
    }
  }
}

void Pass::visit(const OpenFolder& folder, const OpenFolder::Entry& item) {
  struct stat status = {};
  const bool isThere = ::fstatat(folder.descriptor(), item.name, &status, AT_SYMLINK_NOFOLLOW) == 0;
  if (!isThere && extraction_ == Extraction::running) {
    return;  // it has gone
  }
  // A pipe would keep the packer waiting.
  refuseUnless(isThere && (S_ISDIR(status.st_mode) || S_ISREG(status.st_mode)));
  if (extraction_ == Extraction::finished) {
    makeReadable(folder.descriptor(), item.name, status.st_mode);
  }
  if (S_ISREG(status.st_mode)) {
    total_ += static_cast<std::uint64_t>(status.st_size);
    refuseUnless(total_ <= Limits::maxExpandedBytes);
  }
}

void walk(const fs::path& root, const CancellationToken& token, Extraction extraction) {
  if (const auto folder = OpenFolder::open(AT_FDCWD, root.c_str())) {
    Pass(token, extraction).over(*folder);
  }
}

}  // namespace

void check(const fs::path& root, const CancellationToken& token) {
  struct stat status = {};
  if (::lstat(root.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    makeReadable(AT_FDCWD, root.c_str(), status.st_mode);
  }
  walk(root, token, Extraction::finished);
}

Watch::Watch(fs::path root, const CancellationToken& token)
    : root_(std::move(root)), token_(&token), next_(Clock::now()) {}

void Watch::operator()() {
  const auto start = Clock::now();
  if (start < next_) {
    return;
  }
  walk(root_, *token_, Extraction::running);
  const auto end = Clock::now();
  next_ = end + restBetweenWalks * (end - start);
}

}  // namespace tolvane::ExtractedTree
