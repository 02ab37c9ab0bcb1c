#include "platform/documents/qpdf/source_file.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

bool sameContent(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino &&
         left.st_size == right.st_size && left.st_mtim.tv_sec == right.st_mtim.tv_sec &&
         left.st_mtim.tv_nsec == right.st_mtim.tv_nsec;
}

}  // namespace

SourceFile::SourceFile(std::filesystem::path path)
    // Not to be kept waiting by a pipe that took the file's place.
    : path_(std::move(path)),
      descriptor_(::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  if (!descriptor_.isOpen()) {
    throw PlatformError::fromErrno("open", path_, errno);
  }
  if (::fstat(descriptor_.number(), &opened_) != 0) {
    throw PlatformError::fromErrno("read", path_, errno);
  }
  if (!S_ISREG(opened_.st_mode)) {
    throw PlatformError("Could not read " + path_.string() + ": it is no regular file.");
  }
}

std::size_t SourceFile::read(std::uint64_t offset, std::span<char> into) noexcept {
  std::size_t done = 0;
  while (done < into.size()) {
    const ssize_t count = ::pread(descriptor_.number(),
                                  into.data() + done,
                                  into.size() - done,
                                  static_cast<off_t>(offset + done));
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      int none = 0;
      if (count < 0) {
        readFailure_.compare_exchange_strong(none, errno);
      }
      break;
    }
  }
  return done;
}

void SourceFile::checkUnchanged() const {
  if (readFailure_ != 0) {
    throw PlatformError::fromErrno("read", path_, readFailure_);
  }
  struct stat now {};
  if (::stat(path_.c_str(), &now) != 0) {
    throw PlatformError::fromErrno("read", path_, errno);
  }
  if (!sameContent(opened_, now)) {
    throw PlatformError("Could not read " + name() + ": the file changed after it was opened.");
  }
}

}  // namespace tolvane
