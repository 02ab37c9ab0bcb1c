#pragma once

#include "universal/toolchain/confine/options.h"

/// The kernel's rules for paths (Landlock): what this process and its children may read
/// and write.
namespace tolvane::confine::PathRules {

/// @return the version of the rules that this kernel knows; 0 when it has none.
[[nodiscard]] int version();

/// From here on only the writable root, the socket folder and /dev/null can be written, only these
/// and the readable places can be read, no TCP port can be used, and no signal reaches a process
/// outside. Ends the process with a report when that fails.
/// @param version the newest version to use, at least 1.
void apply(const Options& options, int version);

}  // namespace tolvane::confine::PathRules
