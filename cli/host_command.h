#pragma once

#include "cli/arguments.h"
#include "cli/exit_status.h"

namespace tolvane {

/// `tolvane host`: the channel as JSON-RPC, one message a line, over standard input and output.
/// Ends with "host.quit", the end of input, or an interrupt; each cancels a running job and waits
/// for it. At the end of input it does not wait longer than a second.
[[nodiscard]] ExitStatus hostCommand(const Arguments& arguments);

}  // namespace tolvane
