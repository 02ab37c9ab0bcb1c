#pragma once

#include <filesystem>
#include <string>

/// Text files in UTF-8.
namespace tolvane::TextFile {

/// The whole text; a byte-order mark at its start is left out.
/// @throws PlatformError when the file cannot be read or is no well-formed UTF-8.
[[nodiscard]] std::string read(const std::filesystem::path& file);

}  // namespace tolvane::TextFile
