#include "platform/files/tree_removal.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <exception>
#include <fcntl.h>
#include <future>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "platform/files/folder_walk.h"

namespace tolvane {

namespace {

using Paths = std::vector<std::string>;  // of folders, from the root

constexpr std::size_t worthAThread = 16;  // folders

/// Engines leave folders as archives want them: closed even to their owner.
std::optional<OpenFolder> unlocked(int parent, const char* path) {
  auto folder = OpenFolder::open(parent, path);
  if (folder) {
    ::fchmod(folder->descriptor(), S_IRWXU);
  } else if (errno == EACCES && ::fchmodat(parent, path, S_IRWXU, 0) == 0) {
    folder = OpenFolder::open(parent, path);
  }
  return folder;
}

Paths foldersBelow(int root) {
  Paths folders;
  FolderWalk walk(root);
  while (const auto path = walk.next()) {
    folders.push_back(*path);
    auto folder = unlocked(root, path->c_str());
    while (const auto entry = folder ? folder->next() : std::nullopt) {
      if (entry->isFolder) {
        walk.add(*path, entry->name);
      }
    }
  }
  return folders;
}

void removeFiles(int root, const std::string& path) {
  auto folder = OpenFolder::open(root, path.c_str());
  while (const auto entry = folder ? folder->next() : std::nullopt) {
    if (!entry->isFolder) {
      ::unlinkat(folder->descriptor(), entry->name, 0);
    }
  }
}

void removeFilesOf(int root, const Paths& folders) {
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

void removeTree(const std::filesystem::path& path) {
  const auto root = unlocked(AT_FDCWD, path.c_str());
  if (!root) {
    return;
  }
  const Paths folders = foldersBelow(root->descriptor());
  removeFilesOf(root->descriptor(), folders);
  // Each folder stands before those in it; the root itself is the first.
  for (std::size_t index = folders.size(); index > 1; --index) {
    ::unlinkat(root->descriptor(), folders[index - 1].c_str(), AT_REMOVEDIR);
  }
}

}  // namespace

void removeTreeQuietly(const std::filesystem::path& root) noexcept {
  try {
    removeTree(root);
  } catch (const std::exception&) {  // no memory or no thread: the slow way may do
  }
  std::error_code ignored;
  std::filesystem::remove_all(root, ignored);
}

}  // namespace tolvane
