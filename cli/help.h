#pragma once

namespace tolvane {

/// What --help prints.
extern const char* const helpText;
/// What --version prints: "tolvane 0.1.0".
extern const char* const versionText;

}  // namespace tolvane
