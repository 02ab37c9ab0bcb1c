#pragma once

/// A program that is run confined, like an engine, to see whether the confinement holds here.
namespace tolvane::confine::Trial {

/// @param inside a folder that may be written.
/// @param outside a file that may be neither read nor written.
/// @return the exit status: 0 when the folder could be written and a write to the file, its
/// reading, a change of its permissions and a socket were refused.
[[nodiscard]] int run(const char* inside, const char* outside);

}  // namespace tolvane::confine::Trial
