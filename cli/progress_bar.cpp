#include "cli/progress_bar.h"

#include <algorithm>
#include <string>
#include <unistd.h>

#include <fmt/format.h>

#include "cli/console.h"

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
  Console::say(fmt::format("\r[{}] {}/{}", bar, completed, total));
  isDrawn_ = true;
}

void ProgressBar::wipe() {
  if (isDrawn_) {
    Console::say(fmt::format("\r\033[K"));
    isDrawn_ = false;
  }
}

}  // namespace tolvane
