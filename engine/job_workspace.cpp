#include "engine/job_workspace.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <set>
#include <string_view>
#include <system_error>

#include "platform/files/file_system.h"
#include "platform/files/tree_removal.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = ".tolvane-";
bool isWorkspaceName(std::string_view name) {
  constexpr std::size_t uuidLength = 36;
  const auto isUuidLetter = [](char letter) {
    return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'F') || letter == '-';
  };
  return name.starts_with(prefix) && name.size() == prefix.size() + uuidLength &&
         std::all_of(name.begin() + prefix.size(), name.end(), isUuidLetter);
}

/// A workspace is made a moment before it is locked; this long it is left alone.
bool isSettled(const fs::path& workspace) {
  std::error_code ignored;
  const auto age = fs::file_time_type::clock::now() - fs::last_write_time(workspace, ignored);
  return !ignored && age > std::chrono::minutes(1);
}

void removeAbandonedWorkspaces(const fs::path& destination) {
  std::error_code ignored;
  for (fs::directory_iterator entry(destination, ignored), end; !ignored && entry != end;
       entry.increment(ignored)) {
    const fs::path workspace = entry->path();
    if (isWorkspaceName(workspace.filename().string()) && isSettled(workspace)) {
      if (const auto lock = DirectoryLock::tryLock(workspace)) {
        removeTreeQuietly(workspace);
      }
    }
  }
}

/// The workspaces of this process.
struct LivingWorkspaces {
  std::mutex lock;
  std::set<fs::path> paths;
};

LivingWorkspaces& living() {
  static LivingWorkspaces workspaces;
  return workspaces;
}

}  // namespace

JobWorkspace::JobWorkspace(const fs::path& destination)
    : path_(destination / (std::string(prefix) + FileSystem::newUuid())) {
  removeAbandonedWorkspaces(destination);
  FileSystem::createDirectory(path_, FileSystem::ownerOnly);
  lock_ = DirectoryLock::tryLock(path_);
  const std::lock_guard guard(living().lock);
  living().paths.insert(path_);
}

JobWorkspace::~JobWorkspace() {
  removeTreeQuietly(path_);
  if (lock_) {
    removeTreeQuietly(lock_->folder());  // moved meanwhile, with the destination
  }
  const std::lock_guard guard(living().lock);
  living().paths.erase(path_);
}

void JobWorkspace::removeAll() {
  const std::lock_guard guard(living().lock);
  for (const fs::path& path : living().paths) {
    removeTreeQuietly(path);
  }
}

}  // namespace tolvane
