#pragma once

#include <string>

/// Loads the shared libraries of ours that wrap heavy outside libraries. They are not linked,
/// because the loader would then spend 6 ms (libqpdf) to 32 ms (libvips) at every start, also for
/// `--version`.
namespace tolvane::ModuleLoader {

/// @param name file name without ".so", such as "tolvane-images"; looked for in the folder
/// "modules" beside the running program, then in "../lib/tolvane".
/// @param symbol a function with C linkage that takes nothing and returns a pointer.
/// @return what the function returned. The module stays loaded until the process ends.
/// @throws PlatformError when the module or the symbol is missing.
[[nodiscard]] void* load(const std::string& name, const char* symbol);

}  // namespace tolvane::ModuleLoader
