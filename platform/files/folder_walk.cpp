#include "platform/files/folder_walk.h"

#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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

}  // namespace

std::optional<OpenFolder> OpenFolder::open(int parent, const char* path) {
  const int descriptor = ::openat(parent, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
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
  return OpenFolder::open(root_, path.c_str());
}

void FolderWalk::add(const std::string& path, const char* name) {
  pending_.push_back(path + "/" + name);
}

}  // namespace tolvane
