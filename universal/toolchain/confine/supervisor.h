#pragma once

#include <sys/types.h>

/// Stands between the program that runs an engine and the engine, so that nothing of the engine
/// outlives either of them.
///
/// Signals are how it is told what to do: SIGTERM asks the engine to end, SIGQUIT ends everything.
/// The kernel sends SIGQUIT, too, when the thread that started the engine is gone.
namespace tolvane::confine::Supervisor {

/// Starts the engine's process, the leader of a group that its descendants cannot leave. Returns in
/// that new process only; the calling process ends when the engine and all its descendants have,
/// with the engine's exit status, or 128 + the number of the signal that ended it.
/// @param host the process for which the engine runs.
/// @return the process that supervises the new one.
[[nodiscard]] pid_t splitOff(pid_t host);

/// Lets the kernel kill the calling process, and that one only, when its supervisor was killed. A
/// change of user namespace takes this back, so it comes after.
void endWith(pid_t supervisor);

}  // namespace tolvane::confine::Supervisor
