#pragma once

#include "cli/arguments.h"
#include "cli/exit_status.h"

namespace tolvane {

/// `tolvane convert FILE... --to TARGET`: one conversion for all files.
[[nodiscard]] ExitStatus convertCommand(const Arguments& arguments);

/// `tolvane tool TOOL FILE...`: one tool.
[[nodiscard]] ExitStatus toolCommand(const Arguments& arguments);

}  // namespace tolvane
