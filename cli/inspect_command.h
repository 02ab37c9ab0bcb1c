#pragma once

#include "cli/arguments.h"
#include "cli/exit_status.h"

namespace tolvane {

/// `tolvane inspect FILE...`: one line a file, its kind and detail on standard output or its
/// refusal on standard error. @return failed when a file was refused.
[[nodiscard]] ExitStatus inspectCommand(const Arguments& arguments);

}  // namespace tolvane
