#pragma once

#include "cli/arguments.h"
#include "cli/exit_status.h"

namespace tolvane {

/// `tolvane offers FILE...`: what can be done with the files: every conversion and tool, with its
/// warning, its options, and what is missing for it. @return failed when a file was refused.
[[nodiscard]] ExitStatus offersCommand(const Arguments& arguments);

}  // namespace tolvane
