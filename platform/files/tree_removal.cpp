#include "platform/files/tree_removal.h"

#include <atomic>
#include <cstddef>
#include <exception>
#include <future>
#include <system_error>
#include <vector>

namespace tolvane {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t worthAThread = 16;  // folders

bool isFolder(const fs::directory_entry& entry) {
  std::error_code ignored;
  return !entry.is_symlink(ignored) && entry.is_directory(ignored);
}

template <typename Iterator, typename Use>
void forEachEntry(const fs::path& folder, const Use& use) {
  std::error_code error;
  for (Iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    use(*entry);
  }
}

std::vector<fs::path> foldersOf(const fs::path& root) {
  std::vector<fs::path> folders = {root};
  forEachEntry<fs::recursive_directory_iterator>(root, [&](const fs::directory_entry& entry) {
    if (isFolder(entry)) {
      folders.push_back(entry.path());
    }
  });
  return folders;
}

void removeFiles(const fs::path& folder) {
  forEachEntry<fs::directory_iterator>(folder, [](const fs::directory_entry& entry) {
    std::error_code ignored;
    if (!isFolder(entry)) {
      fs::remove(entry.path(), ignored);
    }
  });
}

void removeFilesOf(const std::vector<fs::path>& folders) {
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t index = next++; index < folders.size(); index = next++) {
      removeFiles(folders[index]);
    }
  };
  const std::future<void> other = std::async(std::launch::async, work);
  work();
}

}  // namespace

void removeTreeQuietly(const fs::path& root) noexcept {
  try {
    const std::vector<fs::path> folders = foldersOf(root);
    if (folders.size() >= worthAThread) {
      removeFilesOf(folders);
    }
  } catch (const std::exception&) {  // no memory or no thread: then slowly
  }
  std::error_code ignored;
  fs::remove_all(root, ignored);
}

}  // namespace tolvane
