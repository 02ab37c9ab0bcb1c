#pragma once

/// Address space that is kept back for the end of a job, so that there is memory for a sentence and
/// for clearing up when a limit (ulimit -v) has stopped the job. It costs no memory. Any thread.
namespace tolvane::MemoryReserve {

/// Keeps 64 MiB back, as far as the limit allows; nothing when it is kept back already.
void hold() noexcept;

/// Gives it back.
void release() noexcept;

}  // namespace tolvane::MemoryReserve
