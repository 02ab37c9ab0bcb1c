#pragma once

#include <string>

#include "platform/files/platform_error.h"

namespace tolvane::VipsLibrary {

/// Starts the library at the first call: only the readers that we trust, no cache, no word on
/// standard error. @throws PlatformError when it cannot be started.
void start();

/// The library's last complaint as one line; forgets it.
[[nodiscard]] PlatformError takeError();

}  // namespace tolvane::VipsLibrary
