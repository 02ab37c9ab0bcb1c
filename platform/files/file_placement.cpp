#include "platform/files/file_placement.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/descriptor.h"

namespace tolvane::FilePlacement {

namespace {

namespace fs = std::filesystem;

Outcome failure() {
  return {std::nullopt, errno};
}

Outcome placedAs(const fs::path& name) {
  struct stat status = {};
  return ::lstat(name.c_str(), &status) == 0 ? Outcome{PlacedFile(status)} : failure();
}

/// @return whether the file system may only lack the call.
bool isUnknownCall(int error) {
  return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EINVAL ||
         error == EMLINK || error == EXDEV;
}

void inheritGroup(const fs::path& staged, const fs::path& folder) {
  struct stat status = {};
  if (::stat(folder.c_str(), &status) == 0 && (status.st_mode & S_ISGID) != 0) {
    // Who is not of that group keeps his own.
    (void)!::lchown(staged.c_str(), static_cast<uid_t>(-1), status.st_gid);
  }
}

bool writeAll(int file, const std::uint8_t* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(file, bytes, size);
    if (written < 0 && errno != EINTR) {
      return false;
    }
    if (written > 0) {
      bytes += written;
      size -= static_cast<std::size_t>(written);
    }
  }
  return true;
}

bool copyContent(int from, int to) {
  std::array<std::uint8_t, 65536> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  for (;;) {
    const ssize_t count = ::read(from, buffer.data(), buffer.size());
    if (count == 0) {
      return true;
    }
    if (count < 0 && errno != EINTR) {
      return false;
    }
    if (count > 0 && !writeAll(to, buffer.data(), static_cast<std::size_t>(count))) {
      return false;
    }
  }
}

Outcome copied(const fs::path& staged, const fs::path& name) {
  const Descriptor from(::open(staged.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status = {};
  if (!from.isOpen() || ::fstat(from.number(), &status) != 0) {
    return failure();
  }
  Descriptor to(::open(name.c_str(),
                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                       status.st_mode & ACCESSPERMS));
  if (!to.isOpen()) {
    return failure();
  }
  const bool isWritten = copyContent(from.number(), to.number()) && ::fsync(to.number()) == 0;
  int error = isWritten ? 0 : errno;
  if (::fstat(to.number(), &status) != 0) {
    return failure();
  }
  // Some file systems tell only here that they are full.
  if (::close(to.release()) != 0 && error == 0) {
    error = errno;
  }
  const PlacedFile placed(status);
  if (error != 0) {
    placed.removeFrom(name);
    return {std::nullopt, error};
  }
  return {placed};
}

}  // namespace

PlacedFile::PlacedFile(const struct stat& status)
    : identity_(status), size_(status.st_size), changed_(status.st_mtim) {}

void PlacedFile::removeFrom(const fs::path& name) const noexcept {
  struct stat status = {};
  if (::lstat(name.c_str(), &status) == 0 && FileIdentity(status) == identity_ &&
      status.st_size == size_ && status.st_mtim.tv_sec == changed_.tv_sec &&
      status.st_mtim.tv_nsec == changed_.tv_nsec) {
    ::unlink(name.c_str());
  }
}

Outcome place(const fs::path& staged, const fs::path& name) noexcept {
  inheritGroup(staged, name.parent_path());
  if (::link(staged.c_str(), name.c_str()) == 0) {
    return placedAs(name);
  }
  if (!isUnknownCall(errno)) {
    return failure();
  }
  if (::renameat2(AT_FDCWD, staged.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0) {
    return placedAs(name);
  }
  return isUnknownCall(errno) ? copied(staged, name) : failure();
}

}  // namespace tolvane::FilePlacement
