#include "universal/archives/extracted_tree.h"

#include <cstdint>
#include <sys/stat.h>
#include <system_error>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/platform_error.h"

namespace tolvane::ExtractedTree {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int restBetweenWalks = 20;  // times as long as the walk itself

enum class Extraction { running, finished };

/// Archives can take their owner's right to read what was in them, and packing it needs that.
/// @param mode of a folder or a regular file.
void makeReadable(const fs::path& path, mode_t mode) {
  const mode_t needed = S_ISDIR(mode) ? S_IRUSR | S_IXUSR : S_IRUSR;
  if ((mode & needed) == needed) {
    return;
  }
  std::error_code error;
  fs::permissions(
      path, fs::perms(needed), fs::perm_options::add | fs::perm_options::nofollow, error);
  if (error) {
    throw PlatformError::fromErrno("read", path, error.value());
  }
}

void refuseUnless(bool isSafe) {
  if (!isSafe) {
    throw ConversionFailure::message("Unsafe archive contents were rejected.");
  }
}

/// @return bytes; 0 for a folder.
std::uint64_t checkItem(const fs::path& path, Extraction extraction) {
  struct stat status = {};
  const bool isThere = ::lstat(path.c_str(), &status) == 0;
  if (!isThere && extraction == Extraction::running) {
    return 0;  // it has gone
  }
  // A pipe would keep the packer waiting.
  refuseUnless(isThere && (S_ISDIR(status.st_mode) || S_ISREG(status.st_mode)));
  if (extraction == Extraction::finished) {
    makeReadable(path, status.st_mode);
  }
  return S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
}

void walk(const fs::path& root, const CancellationToken& token, Extraction extraction) {
  std::error_code error;
  fs::recursive_directory_iterator item(root, error);
  if (error) {
    return;
  }
  std::uint64_t total = 0;
  while (item != fs::recursive_directory_iterator()) {
    token.check();
    total += checkItem(item->path(), extraction);
    refuseUnless(total <= Limits::maxExpandedBytes);
    item.increment(error);
    if (error) {
      throw PlatformError::fromErrno("read", root, error.value());
    }
  }
}

}  // namespace

void check(const fs::path& root, const CancellationToken& token) {
  struct stat status = {};
  if (::lstat(root.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    makeReadable(root, status.st_mode);
  }
  walk(root, token, Extraction::finished);
}

Watch::Watch(fs::path root, const CancellationToken& token)
    : root_(std::move(root)), token_(&token), next_(Clock::now()) {}

void Watch::operator()() {
  const auto start = Clock::now();
  if (start < next_) {
    return;
  }
  try {
    walk(root_, *token_, Extraction::running);
  } catch (const PlatformError&) {  // something went away under the walk
  }
  const auto end = Clock::now();
  next_ = end + restBetweenWalks * (end - start);
}

}  // namespace tolvane::ExtractedTree
