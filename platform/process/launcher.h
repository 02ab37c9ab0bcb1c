#pragma once

#include <string>
#include <vector>

/// Starts programs that live on without us: the file manager, the program that opens a result, the
/// tool that keeps the clipboard.
namespace tolvane::Launcher {

/// Looks `program` up in the folders of PATH.
[[nodiscard]] bool isInstalled(const std::string& program);

/// Starts a program in a session of its own, its output thrown away, and does not wait for it. It
/// inherits no descriptor, and no process is left for us to reap.
/// @param program a name that is looked up in PATH, or a path.
/// @param input what it finds on its standard input.
/// @throws PlatformError when it cannot be started.
void start(const std::string& program,
           const std::vector<std::string>& arguments,
           const std::string& input = {});

}  // namespace tolvane::Launcher
