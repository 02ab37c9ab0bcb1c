#include "universal/archives/extracted_tree.h"

#include <cstdint>
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

/// In bytes; 0 for what is no file or has gone meanwhile.
std::uint64_t sizeOf(const fs::directory_entry& item) {
  std::error_code error;
  const std::uint64_t size = item.file_size(error);
  return error ? 0 : size;
}

/// Archives can take their owner's right to read what was in them, and packing it needs that.
/// @param status of the path itself: nothing is done to what a link leads to.
void makeReadable(const fs::path& path, fs::file_status status) {
  const bool isFolder = fs::is_directory(status);
  const fs::perms needed =
      isFolder ? fs::perms::owner_read | fs::perms::owner_exec : fs::perms::owner_read;
  if ((status.permissions() & needed) == needed || (!isFolder && !fs::is_regular_file(status))) {
    return;
  }
  std::error_code error;
  fs::permissions(path, needed, fs::perm_options::add | fs::perm_options::nofollow, error);
  if (error) {
    throw PlatformError::fromErrno("read", path, error.value());
  }
}

void refuseUnless(bool isSafe) {
  if (!isSafe) {
    throw ConversionFailure::message("Unsafe archive contents were rejected.");
  }
}

/// @return bytes.
std::uint64_t checkItem(const fs::directory_entry& item, Extraction extraction) {
  std::error_code error;
  const fs::file_status status = item.symlink_status(error);
  if (error && extraction == Extraction::running) {
    return 0;  // it has gone
  }
  // A pipe would keep the packer waiting.
  refuseUnless(!error && (fs::is_directory(status) || fs::is_regular_file(status)));
  if (extraction == Extraction::finished) {
    makeReadable(item.path(), status);
  }
  return sizeOf(item);
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
    total += checkItem(*item, extraction);
    refuseUnless(total <= Limits::maxExpandedBytes);
    item.increment(error);
    if (error) {
      throw PlatformError::fromErrno("read", root, error.value());
    }
  }
}

}  // namespace

void check(const fs::path& root, const CancellationToken& token) {
  std::error_code error;
  makeReadable(root, fs::symlink_status(root, error));
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
