#pragma once

#include "cli/arguments.h"
#include "cli/exit_status.h"

namespace tolvane {

/// `tolvane open`: hands files to the desktop host of the session, which shows its palette with
/// them; without files, with what is selected in the file manager. Starts the host when none is
/// running, and does not wait for it.
[[nodiscard]] ExitStatus openCommand(const Arguments& arguments);

}  // namespace tolvane
