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

/// In bytes; 0 for what is no file or has gone meanwhile.
std::uint64_t sizeOf(const fs::directory_entry& item) {
  std::error_code error;
  const std::uint64_t size = item.file_size(error);
  return error ? 0 : size;
}

}  // namespace

void check(const fs::path& root, const CancellationToken& token) {
  std::error_code error;
  fs::recursive_directory_iterator item(root, error);
  if (error) {
    return;
  }
  std::uint64_t total = 0;
  while (item != fs::recursive_directory_iterator()) {
    token.check();
    // Links first: the other two questions follow them. A pipe would keep the packer waiting.
    const bool isPlain =
        !item->is_symlink(error) && (item->is_directory(error) || item->is_regular_file(error));
    total += sizeOf(*item);
    if ((!isPlain && !error) || total > Limits::maxExpandedBytes) {
      throw ConversionFailure::message("Unsafe archive contents were rejected.");
    }
    item.increment(error);
    if (error) {
      throw PlatformError::fromErrno("read", root, error.value());
    }
  }
}

Watch::Watch(fs::path root, const CancellationToken& token)
    : root_(std::move(root)), token_(&token), next_(Clock::now()) {}

void Watch::operator()() {
  const auto start = Clock::now();
  if (start < next_) {
    return;
  }
  try {
    check(root_, *token_);
  } catch (const PlatformError&) {  // something went away under the walk
  }
  const auto end = Clock::now();
  next_ = end + restBetweenWalks * (end - start);
}

}  // namespace tolvane::ExtractedTree
