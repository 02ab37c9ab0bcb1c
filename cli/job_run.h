#pragma once

#include <string>

#include "cli/arguments.h"
#include "cli/exit_status.h"
#include "engine/primitives/value.h"

namespace tolvane {

/// Runs one job over the channel with a progress bar and prints the paths of its results. Ctrl-C
/// cancels it.
/// @param action id of a native action, or "universal".
/// @param firstFile operand from which on the files stand.
[[nodiscard]] ExitStatus runJob(const Arguments& arguments,
                                const std::string& action,
                                std::size_t firstFile,
                                Value::Map options);

}  // namespace tolvane
