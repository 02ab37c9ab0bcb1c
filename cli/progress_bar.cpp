#include "cli/progress_bar.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

#include <fmt/format.h>

namespace tolvane {

ProgressBar::ProgressBar(Visibility visibility)
    : isVisible_(visibility == Visibility::onTerminals && ::isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
  wipe();
}

void ProgressBar::show(long completed, long total) {
  if (!isVisible_ || total <= 0) {
    return;
  }
  constexpr long width = 40;
  const auto filled = static_cast<std::size_t>(std::clamp(completed * width / total, 0L, width));
  const std::string bar = std::string(filled, '#') + std::string(width - filled, '.');
  fmt::print(stderr, "\r[{}] {}/{}", bar, completed, total);
  std::fflush(stderr);
  isDrawn_ = true;
}

void ProgressBar::wipe() {
  if (isDrawn_) {
    fmt::print(stderr, "\r\033[K");
    std::fflush(stderr);
    isDrawn_ = false;
  }
}

}  // namespace tolvane
