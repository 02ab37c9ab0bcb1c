#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane::UniversalEngine {

/// Writes the larger PNG, JPEG and GIF pictures that stand in a Markdown text as data addresses,
/// "![](data:image/png;base64,...)", into files, and names the files instead: pandoc takes many
/// seconds for each megabyte of such an address.
/// @param folder the files are named relative to it.
/// @param prefix of the names of the files.
/// @return nullopt when there is no such picture. @throws PlatformError
[[nodiscard]] std::optional<std::string> movePicturesOut(std::string_view markdown,
                                                         const std::filesystem::path& folder,
                                                         const std::string& prefix);

}  // namespace tolvane::UniversalEngine
