#pragma once

#include "universal/toolchain/confine/options.h"

namespace tolvane::confine {

/// Gives this process a view of the file system of its own, in which only the writable root and
/// the socket folder can be changed. Ends the process with a report when that fails.
void makeOwnMounts(const Options& options);

}  // namespace tolvane::confine
