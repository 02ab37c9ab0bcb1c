#pragma once

#include <string_view>

/// How the helper tells the program that started it whether the engine came to run. The words go
/// through a pipe of their own, because the engine may end with any status and print any text.
namespace tolvane::confine::Report {

/// Standing in for a file: inherited as this number, closed by the exec of the engine.
inline constexpr int descriptor = 3;

/// Marks the point after which every failure is the engine's own. The number of the engine's
/// process group and a line end follow.
inline constexpr char started = '+';

/// Ends the process: `what` could not be done, for the reason in errno.
[[noreturn]] void fail(std::string_view what);

/// Ends the process when `result` is negative.
void check(long result, std::string_view what);

void engineStarts();

}  // namespace tolvane::confine::Report
