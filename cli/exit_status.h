#pragma once

namespace tolvane {

/// How a command ends; the program's exit status.
enum class ExitStatus { done = 0, failed = 1, wrongUsage = 2, cancelled = 130 };

}  // namespace tolvane
