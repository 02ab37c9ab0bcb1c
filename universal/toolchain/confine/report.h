#pragma once

#include <string_view>

#include "universal/toolchain/confine/kernel.h"

/// How the helper tells the program that started it whether the engine came to run. The words go
/// through a pipe of their own, because the engine may end with any status and print any text.
namespace tolvane::confine::Report {

/// Standing in for a file: inherited as this number, closed by the exec of the engine.
inline constexpr int descriptor = 3;

/// Marks the point after which every failure is the engine's own. The number of the engine's
/// process group and a line end follow.
inline constexpr std::string_view started = "+";

/// Ends the process: `what` could not be done. Reported as the number, a space and `what`.
/// @param error of errno.h.
[[noreturn]] void fail(int error, std::string_view what);

/// Ends the process when the kernel answered with an error.
void check(Kernel::Answer answer, std::string_view what);

void engineStarts();

}  // namespace tolvane::confine::Report
