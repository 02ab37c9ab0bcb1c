#pragma once

#include <string_view>

/// The two streams that people and scripts read. Nothing here throws: a reader that has gone away
/// must not end a job half-way.
namespace tolvane::Console {

/// Makes sure that descriptors 0 to 2 are taken, so that no file of ours gets one of their numbers.
/// What was closed reads as ended and cannot be written. From then on standard output is print()'s
/// alone: what anything else in the process writes to descriptor 1 or to stdout is lost.
void claimStreams() noexcept;

/// Results, to standard output.
void print(std::string_view text) noexcept;
/// Messages and progress, to standard error.
void say(std::string_view text) noexcept;

/// Hands out what print() kept. @return false when any of it was lost.
[[nodiscard]] bool flushResults() noexcept;

}  // namespace tolvane::Console
