#include "platform/files/tree_removal.h"

#include <atomic>
#include <cstddef>
#include <exception>
#include <fcntl.h>
#include <future>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/files/descriptor.h"
#include "platform/files/file_identity.h"
#include "platform/files/folder_walk.h"

namespace tolvane {

namespace {

struct Folder {
  std::string path;  // from the root
  FileIdentity identity;
};
using Folders = std::vector<Folder>;

constexpr std::size_t worthAThread = 16;  // folders

/// @return absent for a folder of another user, whose content is not ours to remove.
std::optional<FileIdentity> identityIfOwn(int folder) {
  struct stat status = {};
  return ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid()
             ? std::optional(FileIdentity(status))
             : std::nullopt;
}

/// Engines leave folders as archives want them: closed even to their owner.
void unlock(const Descriptor& place) {
  // A place has no permissions of its own to change: the kernel's name of it leads to the folder.
  ::chmod(("/proc/self/fd/" + std::to_string(place.number())).c_str(), S_IRWXU);
}

Folders foldersBelow(int root) {
  Folders folders;
  FolderWalk walk(root);
  while (auto path = walk.next()) {
    const Descriptor place = folderBelow(root, *path);
    const auto identity = place.isOpen() ? identityIfOwn(place.number()) : std::nullopt;
    if (!identity) {
      continue;
    }
    unlock(place);
    auto folder = OpenFolder::open(place.number(), ".");
    while (const auto entry = folder ? folder->next() : std::nullopt) {
      if (entry->isFolder) {
        walk.add(*path, entry->name);
      }
    }
    folders.push_back({std::move(*path), *identity});
  }
  return folders;
}

/// The folder that was walked through, not another that has its name now.
std::optional<OpenFolder> reopened(int root, const Folder& folder) {
  auto opened = OpenFolder::openBelow(root, folder.path);
  if (opened && identityIfOwn(opened->descriptor()) != folder.identity) {
    opened.reset();
  }
  return opened;
}

void removeFiles(int root, const Folder& walked) {
  auto folder = reopened(root, walked);
  while (const auto entry = folder ? folder->next() : std::nullopt) {
    if (!entry->isFolder) {
      ::unlinkat(folder->descriptor(), entry->name, 0);
    }
  }
}

void removeFilesOf(int root, const Folders& folders) {
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t index = next++; index < folders.size(); index = next++) {
      removeFiles(root, folders[index]);
    }
  };
  std::future<void> other;
  if (folders.size() >= worthAThread) {
    other = std::async(std::launch::async, work);
  }
  work();
}

/// Only an empty one goes, from a folder of our own.
void removeFolder(int root, const Folder& folder) {
  const std::size_t slash = folder.path.rfind('/');
  const Descriptor parent = folderBelow(root, folder.path.substr(0, slash));
  const char* name = folder.path.c_str() + slash + 1;
  if (parent.isOpen() && identityIfOwn(parent.number()) &&
      FileIdentity::of(parent.number(), name) == folder.identity) {
    ::unlinkat(parent.number(), name, AT_REMOVEDIR);
  }
}

void emptyFolder(int root) {
  const Folders folders = foldersBelow(root);
  removeFilesOf(root, folders);
  // Each folder stands before those in it; the root itself is the first.
  for (std::size_t index = folders.size(); index > 1; --index) {
    removeFolder(root, folders[index - 1]);
  }
}

}  // namespace

void emptyFolderQuietly(int folder) noexcept {
  try {
    emptyFolder(folder);
  } catch (const std::exception&) {
    // No memory or no thread: the rest stays.
  }
}

bool removeEmptyFolder(int parent, const char* name, int folder) noexcept {
  const auto identity = FileIdentity::of(folder);
  return identity && FileIdentity::of(parent, name) == identity &&
         ::unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

void removeTreeQuietly(const std::filesystem::path& root) noexcept {
  const Descriptor folder(::open(root.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (folder.isOpen()) {
    emptyFolderQuietly(folder.number());
    removeEmptyFolder(AT_FDCWD, root.c_str(), folder.number());
  }
}

}  // namespace tolvane
