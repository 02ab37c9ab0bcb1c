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

  /// Over all of it. @throws PlatformError when a part of it cannot be read.
  void over(const OpenFolder& root);
  void visit(const OpenFolder& folder, const OpenFolder::Entry& item);

 private:
  const CancellationToken& token_;
  Extraction extraction_;
  std::uint64_t total_ = 0;  // bytes
};

void Pass::over(const OpenFolder& root) {
  FolderWalk walk(root.descriptor());
  while (const auto path = walk.next()) {
    auto folder = walk.open(*path);
    if (!folder) {
      throw PlatformError::fromErrno("read", *path, errno);
    }
    while (const auto item = folder->next()) {
      visit(*folder, *item);
      if (item->isFolder) {
        walk.add(*path, item->name);
      }
    }
  }
}

void Pass::visit(const OpenFolder& folder, const OpenFolder::Entry& item) {
  token_.check();
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

}  // namespace

void check(const fs::path& root, const CancellationToken& token) {
  struct stat status = {};
  if (::lstat(root.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    makeReadable(AT_FDCWD, root.c_str(), status.st_mode);
  }
  if (const auto folder = OpenFolder::open(AT_FDCWD, root.c_str())) {
    Pass(token, Extraction::finished).over(*folder);
  }
}

Watch::Watch(fs::path root, const CancellationToken& token)
    : walk_(std::move(root)), token_(&token) {}

void Watch::operator()() {
  Pass pass(*token_, Extraction::running);
  walk_([&pass](const OpenFolder& folder, const OpenFolder::Entry& item) {
    pass.visit(folder, item);
  });
}

}  // namespace tolvane::ExtractedTree
