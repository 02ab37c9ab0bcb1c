#include "platform/files/folder_walk.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <fcntl.h>
#include <linux/openat2.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

#include "platform/files/file_identity.h"

namespace tolvane {

namespace {

bool isFolder(int folder, const dirent& entry) {
  struct stat status = {};
  // Some file systems do not tell what an entry is.
  return entry.d_type == DT_DIR ||
         (entry.d_type == DT_UNKNOWN &&
          ::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
          S_ISDIR(status.st_mode));
}

constexpr int place = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// For kernels without openat2, and sandboxes that refuse it.
Descriptor folderStepByStep(int root, const std::string& path) {
  Descriptor folder(::openat(root, ".", place));
  const auto device = FileIdentity::of(root);
  for (std::size_t at = 0; folder.isOpen() && at < path.size();) {
    const std::size_t end = std::min(path.find('/', at), path.size());
    folder = Descriptor(::openat(folder.number(), path.substr(at, end - at).c_str(), place));
    at = end + 1;
    const auto reached = FileIdentity::of(folder.number());
    if (folder.isOpen() && (!reached || !device || reached->device != device->device)) {
      errno = EXDEV;
      return {};
    }
  }
  return folder;
}

/// @param path shorter than PATH_MAX.
Descriptor folderAtOnce(int root, const std::string& path) {
  open_how how = {};
  how.flags = place;
  how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_XDEV;
  const long number = ::syscall(SYS_openat2, root, path.c_str(), &how, sizeof how);
  if (number < 0 && (errno == ENOSYS || errno == EPERM)) {
    return folderStepByStep(root, path);
  }
  return Descriptor(static_cast<int>(number));
}

}  // namespace

Descriptor folderBelow(int root, const std::string& path) {
  Descriptor folder;
  std::size_t at = 0;
  while (path.size() - at >= PATH_MAX) {
    const std::size_t end = path.rfind('/', at + PATH_MAX - 1);
    folder = folderAtOnce(at == 0 ? root : folder.number(), path.substr(at, end - at));
    if (!folder.isOpen()) {
      return folder;
    }
    at = end + 1;
  }
  return folderAtOnce(at == 0 ? root : folder.number(), path.substr(at));
}

std::optional<OpenFolder> OpenFolder::open(int parent, const char* path) {
  return of(::openat(parent, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

std::optional<OpenFolder> OpenFolder::openBelow(int root, const std::string& path) {
  const Descriptor folder = folderBelow(root, path);
  return folder.isOpen() ? open(folder.number(), ".") : std::nullopt;
}

std::optional<OpenFolder> OpenFolder::of(int descriptor) {
  if (descriptor < 0) {
    return std::nullopt;
  }
  if (DIR* stream = ::fdopendir(descriptor)) {
    return OpenFolder(stream);
  }
  const int code = errno;
  ::close(descriptor);
  errno = code;
  return std::nullopt;
}

std::optional<OpenFolder::Entry> OpenFolder::next() {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads this stream
  while (const dirent* entry = ::readdir(stream_.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") {
      return Entry{entry->d_name, isFolder(descriptor(), *entry)};
    }
  }
  return std::nullopt;
}

std::optional<std::string> FolderWalk::next() {
  if (pending_.empty()) {
    return std::nullopt;
  }
  std::string path = std::move(pending_.back());
  pending_.pop_back();
  return path;
}

std::optional<OpenFolder> FolderWalk::open(const std::string& path) const {
  return OpenFolder::openBelow(root_, path);
}

void FolderWalk::add(const std::string& path, const char* name) {
  pending_.push_back(path + "/" + name);
}

}  // namespace tolvane
