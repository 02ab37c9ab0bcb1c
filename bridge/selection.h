#pragma once

#include <cstdint>
#include <string>

#include "engine/primitives/value.h"

namespace tolvane {

/// The files that actions are offered for, and the offers. Main thread only.
struct Selection {
  std::int64_t revision = 0;  ///< of the latest accepted intake; results of older ones are dropped
  Value::List files;          ///< file entries
  Value::List formats;        ///< conversion offers
  Value::List tools;          ///< tool offers
  std::string message = "Select a file in Finder and use the shortcut, or drop it here.";

  /// "files", "message", "formats" and "tools", as "ready" and "selectionResolved" carry them.
  [[nodiscard]] Value::Map state() const;
};

}  // namespace tolvane
