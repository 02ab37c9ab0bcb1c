#include "platform/files/transient_folder.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

constexpr const char* mark = ".tolvane";

/// A folder is made a moment before it is locked; this long it is left alone.
constexpr double settled = 60;  // seconds

struct Kind {
  std::string_view prefix;
  std::size_t letters;

  [[nodiscard]] bool isMarked() const { return letters < TransientFolder::wholeUuid; }
};

bool isNameOf(const Kind& kind, std::string_view name) {
  const auto isUuidLetter = [](char letter) {
    return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'F') || letter == '-';
  };
  return name.starts_with(kind.prefix) && name.size() == kind.prefix.size() + kind.letters &&
         std::all_of(name.begin() + kind.prefix.size(), name.end(), isUuidLetter);
}

/// Whoever may write to the parent can put a folder of such a name there: only those of this user
/// that nobody else could enter are taken for ours.
void removeIfAbandoned(const Kind& kind, const fs::path& path) {
  const auto folder = HeldFolder::openPrivate(path);
  std::error_code ignored;
  if (folder && folder->age() > settled && folder->tryLock() &&
      (!kind.isMarked() || fs::exists(folder->lastingPath() / mark, ignored))) {
    folder->removeQuietly();
  }
}

void removeAbandoned(const Kind& kind, const fs::path& parent) {
  std::error_code ignored;
  for (fs::directory_iterator entry(parent, ignored), end; !ignored && entry != end;
       entry.increment(ignored)) {
    if (isNameOf(kind, entry->path().filename().string())) {
      removeIfAbandoned(kind, entry->path());
    }
  }
}

HeldFolder made(const Kind& kind, const fs::path& path) {
  removeAbandoned(kind, path.parent_path());
  HeldFolder folder = HeldFolder::make(path);
  // Where there are no locks, nobody gets one, and nobody takes the folder for abandoned.
  (void)folder.tryLock();
  try {
    if (kind.isMarked()) {
      FileSystem::append(folder.lastingPath() / mark, {});
    }
  } catch (const PlatformError&) {
    folder.removeQuietly();
    throw;
  }
  return folder;
}

/// Threads that are not waited for may still write into it.
void removePersistently(const HeldFolder& folder) {
  constexpr int attempts = 50;
  for (int attempt = 0; attempt < attempts && !folder.removeQuietly(); ++attempt) {
  }
}

}  // namespace

TransientFolder::TransientFolder(const fs::path& parent,
                                 const std::string& prefix,
                                 std::size_t letters)
    : path_(parent / (prefix + FileSystem::newUuid().substr(0, letters))),
      folder_(made({prefix, letters}, path_)),
      atTheEnd_([this] { removePersistently(folder_); }) {}

TransientFolder::~TransientFolder() {
  folder_.removeQuietly();
}

}  // namespace tolvane
