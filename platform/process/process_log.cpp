#include "platform/process/process_log.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

constexpr mode_t ownerOnly = 0600;

}  // namespace

ProcessLog::ProcessLog(const std::filesystem::path& folder)
    : path_(folder / (".process-" + FileSystem::newUuid() + ".log")),
      // Appending, so that an engine which opens its standard output again does not write over what
      // it has printed.
      file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, ownerOnly)) {
  if (file_.number() < 0) {
    throw PlatformError::fromErrno("open", path_, errno);
  }
}

ProcessLog::~ProcessLog() {
  file_ = Descriptor();
  ::unlink(path_.c_str());
}

std::optional<std::uint64_t> ProcessLog::size() const {
  struct stat status = {};
  if (::fstat(file_.number(), &status) != 0) {
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(std::max<off_t>(status.st_size, 0));
}

Bytes ProcessLog::content() const {
  // Most engines are silent, and there is nothing to flush in an empty file but its name, which
  // would wait for the disk.
  if (size() != 0U && ::fdatasync(file_.number()) != 0) {
    throw PlatformError::fromErrno("flush", path_, errno);
  }
  // The engine may have put something else in the file's place, such as a pipe that would never
  // end.
  struct stat written = {};
  struct stat found = {};
  if (::lstat(path_.c_str(), &found) != 0) {
    throw PlatformError::fromErrno("open", path_, errno);
  }
  if (::fstat(file_.number(), &written) != 0 || written.st_dev != found.st_dev ||
      written.st_ino != found.st_ino) {
    throw PlatformError::fromErrno("open", path_, ESTALE);
  }
  return FileSystem::readAll(path_);
}

}  // namespace tolvane
