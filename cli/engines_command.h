#pragma once

#include "cli/arguments.h"
#include "cli/exit_status.h"

namespace tolvane {

/// `tolvane engines`: where each outside engine was found, its version, the Debian package that
/// brings it, and how engines are confined on this machine.
[[nodiscard]] ExitStatus enginesCommand(const Arguments& arguments);

}  // namespace tolvane
