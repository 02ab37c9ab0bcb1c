#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/desktop/accessibility/accessible.h"
#include "platform/desktop/geometry.h"

namespace tolvane {

/// The element of a file that was found selected, alone.
struct ShownFile {
  std::int64_t processIdentifier = 0;
  AccessibleReference element;
  std::filesystem::path file;
  Point windowOrigin;  ///< WindowPlace::origin of its window
};

}  // namespace tolvane
