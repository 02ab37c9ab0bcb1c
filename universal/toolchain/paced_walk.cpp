#include "universal/toolchain/paced_walk.h"

#include <fcntl.h>
#include <utility>

namespace tolvane {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int restBetweenWalks = 20;  // times as long as the walk itself

}  // namespace

PacedWalk::PacedWalk(std::filesystem::path root) : root_(std::move(root)), next_(Clock::now()) {}

bool PacedWalk::operator()(const Visit& visit) {
  const auto start = Clock::now();
  if (start < next_) {
    return false;
  }
  walk(visit);
  const auto end = Clock::now();
  next_ = end + restBetweenWalks * (end - start);
  return true;
}

void PacedWalk::walk(const Visit& visit) const {
  const auto root = OpenFolder::open(AT_FDCWD, root_.c_str());
  if (!root) {
    return;
  }
  FolderWalk walk(root->descriptor());
  while (const auto path = walk.next()) {
    auto folder = walk.open(*path);
    while (const auto entry = folder ? folder->next() : std::nullopt) {
      visit(*folder, *entry);
      if (entry->isFolder) {
        walk.add(*path, entry->name);
      }
    }
  }
}

}  // namespace tolvane
