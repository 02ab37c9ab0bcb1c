#pragma once

#include <string>
#include <vector>

/// Starts programs that live on without us: the file manager, the program that opens a result, the
/// tool that keeps the clipboard.
namespace tolvane::Launcher {

/// Looks `program` up in the folders of PATH.
[[nodiscard]] bool isInstalled(const std::string& program);

/// Starts a program in a session of its own, its output thrown away, and does not wait for it.
/// @param input what it finds on its standard input.
/// @throws PlatformError when it cannot be started.
void start(const std::string& program,
           const std::vector<std::string>& arguments,
           const std::string& input = {});

}  // namespace tolvane::Launcher
