#include "engine/job_workspace.h"

#include <algorithm>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_system.h"

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
constexpr double settled = 60;  // seconds

/// Whoever may write to the destination can put a folder of such a name there: only those of this
/// user that nobody else could enter are taken for workspaces.
void removeIfAbandoned(const fs::path& path) {
  const auto workspace = HeldFolder::openPrivate(path);
  if (workspace && workspace->age() > settled && workspace->tryLock()) {
    workspace->removeQuietly();
  }
}

HeldFolder made(const fs::path& workspace) {
  std::error_code ignored;
  for (fs::directory_iterator entry(workspace.parent_path(), ignored), end;
       !ignored && entry != end;
       entry.increment(ignored)) {
    if (isWorkspaceName(entry->path().filename().string())) {
      removeIfAbandoned(entry->path());
    }
  }
  return HeldFolder::make(workspace);
}

/// The workspaces of this process.
struct LivingWorkspaces {
  std::mutex lock;
  std::set<const HeldFolder*> folders;
};

LivingWorkspaces& living() {
  static LivingWorkspaces workspaces;
  return workspaces;
}

}  // namespace

JobWorkspace::JobWorkspace(const fs::path& destination)
    : path_(destination / (std::string(prefix) + FileSystem::newUuid())), folder_(made(path_)) {
  // Where there are no locks, nobody gets one, and nobody takes the folder for abandoned.
  (void)folder_.tryLock();
  const std::lock_guard guard(living().lock);
  living().folders.insert(&folder_);
}

JobWorkspace::~JobWorkspace() {
  folder_.removeQuietly();
  const std::lock_guard guard(living().lock);
  living().folders.erase(&folder_);
}

void JobWorkspace::requireInPlace() const {
  if (!folder_.isInPlace()) {
    throw ConversionFailure::message(
        "The working folder of this job was moved or replaced while it ran. Nothing was saved. "
        "Choose an output folder that only you can change.");
  }
}

fs::path JobWorkspace::lasting(const fs::path& inside) const {
  requireInPlace();
  return lastingPath() / inside.lexically_relative(path_);
}

void JobWorkspace::removeAll() {
  const std::lock_guard guard(living().lock);
  for (const HeldFolder* folder : living().folders) {
    folder->removeQuietly();
  }
}

}  // namespace tolvane
