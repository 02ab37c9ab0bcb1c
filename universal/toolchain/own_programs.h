#pragma once

#include <filesystem>
#include <string_view>

/// The small programs that are installed with this one.
namespace tolvane::OwnPrograms {

/// @return where `name` stands: beside the running program, else in "../lib/tolvane" (the installed
/// place). The file need not exist.
[[nodiscard]] std::filesystem::path path(std::string_view name);

}  // namespace tolvane::OwnPrograms
