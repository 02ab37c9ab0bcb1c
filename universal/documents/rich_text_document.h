#pragma once

#include <filesystem>
#include <string>

namespace tolvane::UniversalEngine {

/// The plain text of an RTF file.
/// @throws ConversionFailure when it is none; PlatformError when it cannot be read.
[[nodiscard]] std::string richText(const std::filesystem::path& file);

/// The plain text of an RTFD document: a folder with the text and its attachments, or one file into
/// which such a folder was packed.
/// @throws as richText
[[nodiscard]] std::string richTextOfPackage(const std::filesystem::path& document);

}  // namespace tolvane::UniversalEngine
