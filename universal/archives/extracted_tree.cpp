#include "universal/archives/extracted_tree.h"

#include <cerrno>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/platform_error.h"

namespace tolvane::ExtractedTree {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int restBetweenWalks = 20;  // times as long as the walk itself

enum class Extraction { running, finished };

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

/// @param parent an open folder, or AT_FDCWD.
/// @return null, and errno, when it cannot be read.
Folder openFolder(int parent, const char* name) {
  const int descriptor = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  Folder folder(descriptor >= 0 ? ::fdopendir(descriptor) : nullptr);
  if (!folder && descriptor >= 0) {
    const int code = errno;
    ::close(descriptor);
    errno = code;
  }
  return folder;
}

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
class Walk {
 public:
  Walk(const CancellationToken& token, Extraction extraction)
      : token_(token), extraction_(extraction) {}

  /// @throws PlatformError when a part of it cannot be read.
  void enter(DIR& folder);

 private:
  void visit(int folder, const char* name);

  const CancellationToken& token_;
  Extraction extraction_;
  std::uint64_t total_ = 0;  // bytes
};

void Walk::enter(DIR& folder) {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads this folder's stream
  while (const dirent* entry = ::readdir(&folder)) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") {
      token_.check();
      visit(::dirfd(&folder), entry->d_name);
    }
  }
}

void Walk::visit(int folder, const char* name) {
  struct stat status = {};
  const bool isThere = ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0;
  if (!isThere && extraction_ == Extraction::running) {
    return;  // it has gone
  }
  // A pipe would keep the packer waiting.
  refuseUnless(isThere && (S_ISDIR(status.st_mode) || S_ISREG(status.st_mode)));
  if (extraction_ == Extraction::finished) {
    makeReadable(folder, name, status.st_mode);
  }
  if (S_ISDIR(status.st_mode)) {
    const Folder inner = openFolder(folder, name);
    if (!inner) {
      throw PlatformError::fromErrno("read", name, errno);
    }
    enter(*inner);
    return;
  }
  total_ += static_cast<std::uint64_t>(status.st_size);
  refuseUnless(total_ <= Limits::maxExpandedBytes);
}

/// Archives can take their owner's right to read what was in them, and packing it needs that.
/// @param mode of a folder or a regular file.
void walk(const fs::path& root, const CancellationToken& token, Extraction extraction) {
  if (const Folder folder = openFolder(AT_FDCWD, root.c_str())) {
    Walk(token, extraction).enter(*folder);
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
  try {
    walk(root_, *token_, Extraction::running);
  } catch (const PlatformError&) {  // something went away under the walk
  }
  const auto end = Clock::now();
  next_ = end + restBetweenWalks * (end - start);
}

}  // namespace tolvane::ExtractedTree
