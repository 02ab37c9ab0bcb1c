#include "platform/files/held_folder.h"

#include <cerrno>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "platform/files/file_identity.h"
#include "platform/files/platform_error.h"
#include "platform/files/tree_removal.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

constexpr int place = O_PATH | O_DIRECTORY | O_CLOEXEC;

/// @return whether nobody else can have made it or can enter it.
bool isPrivate(int folder) {
  struct stat status = {};
  return ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() &&
         (status.st_mode & ALLPERMS) == S_IRWXU;
}

}  // namespace

HeldFolder::HeldFolder(const fs::path& path, Descriptor parent)
    : path_(path),
      name_(path.filename().string()),
      parent_(std::move(parent)),
      folder_(::openat(
          parent_.number(), name_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {}

HeldFolder HeldFolder::make(const fs::path& path) {
  Descriptor parent(::open(path.parent_path().c_str(), place));
  if (!parent.isOpen() || ::mkdirat(parent.number(), path.filename().c_str(), S_IRWXU) != 0) {
    throw PlatformError::fromErrno("create", path, errno);
  }
  HeldFolder made(path, std::move(parent));
  struct stat status = {};
  if (!made.folder_.isOpen() || ::fstat(made.folder_.number(), &status) != 0) {
    const int code = errno;
    // Whatever has the name by now goes only when it is an empty folder.
    ::unlinkat(made.parent_.number(), made.name_.c_str(), AT_REMOVEDIR);
    throw PlatformError::fromErrno("open", path, code);
  }
  if (status.st_uid != ::geteuid()) {
    throw PlatformError("Could not create " + path.string() + ": it was replaced meanwhile.");
  }
  // The mask may have taken bits. File systems of other systems have no permissions to set.
  if (::fchmod(made.folder_.number(), S_IRWXU) != 0 && errno != EPERM) {
    const int code = errno;
    made.removeQuietly();
    throw PlatformError::fromErrno("create", path, code);
  }
  return made;
}

std::optional<HeldFolder> HeldFolder::openPrivate(const fs::path& path) {
  HeldFolder opened(path, Descriptor(::open(path.parent_path().c_str(), place)));
  if (!opened.folder_.isOpen() || !isPrivate(opened.folder_.number())) {
    return std::nullopt;
  }
  return opened;
}

bool HeldFolder::tryLock() const {
  return ::flock(folder_.number(), LOCK_EX | LOCK_NB) == 0;
}

bool HeldFolder::isInPlace() const {
  const auto identity = FileIdentity::of(folder_.number());
  return identity && FileIdentity::of(AT_FDCWD, path_.c_str()) == identity;
}

fs::path HeldFolder::lastingPath() const {
  return "/proc/self/fd/" + std::to_string(folder_.number());
}

double HeldFolder::age() const {
  struct stat status = {};
  return ::fstat(folder_.number(), &status) == 0
             ? std::difftime(std::time(nullptr), status.st_mtim.tv_sec)
             : 0;
}

bool HeldFolder::removeQuietly() const noexcept {
  emptyFolderQuietly(folder_.number());
  if (removeEmptyFolder(parent_.number(), name_.c_str(), folder_.number())) {
    return true;
  }
  try {
    return removeWhereItIsNow();
  } catch (const std::exception&) {
    return false;  // no memory: an empty folder stays
  }
}

bool HeldFolder::removeWhereItIsNow() const {
  std::error_code error;
  const fs::path now = fs::read_symlink(lastingPath(), error);
  return !error && removeEmptyFolder(AT_FDCWD, now.c_str(), folder_.number());
}

}  // namespace tolvane
