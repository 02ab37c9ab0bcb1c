#pragma once

#include "cli/arguments.h"
#include "cli/exit_status.h"

namespace tolvane {

/// `tolvane action ACTION FILE...`: runs one job over the channel and prints the paths of its
/// results.
[[nodiscard]] ExitStatus actionCommand(const Arguments& arguments);

}  // namespace tolvane
