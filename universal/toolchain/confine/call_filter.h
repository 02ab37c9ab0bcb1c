#pragma once

#include "universal/toolchain/confine/options.h"

namespace tolvane::confine {

/// Refuses this process and its children the system calls that paths and mounts do not judge:
/// network, other processes, namespaces, kernel settings. Ends the process with a report when that
/// fails.
/// @param pathRules the version of the path rules in force; older ones leave more to this filter.
void applyCallFilter(const Options& options, int pathRules);

}  // namespace tolvane::confine
