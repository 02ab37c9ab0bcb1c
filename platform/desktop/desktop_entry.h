#pragma once

#include <map>
#include <string>
#include <string_view>

/// Texts of the Desktop Entry format (freedesktop.org, version 1.5).
namespace tolvane::DesktopEntry {

/// The keys and values of the group "Desktop Entry", escapes (\s \n \t \r \\) undone. Of
/// two equal keys the last one counts.
[[nodiscard]] std::map<std::string, std::string> keysIn(std::string_view text);

/// @return the value of "Exec" that runs the program without arguments, as it stands in the file.
[[nodiscard]] std::string execValue(std::string_view program);

/// @param value of the key "Exec", escapes undone.
/// @return its first argument, unquoted: the program; empty when there is none.
[[nodiscard]] std::string programIn(std::string_view value);

}  // namespace tolvane::DesktopEntry
