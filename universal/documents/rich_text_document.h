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

/// An RTF file with the text of an RTFD document, for programs that do not know those.
/// @param copy written when the document is one file; its folder is there.
/// @return where the RTF stands: in the document or at `copy`. @throws as richText
[[nodiscard]] std::filesystem::path richTextFileOf(const std::filesystem::path& document,
                                                   const std::filesystem::path& copy);

}  // namespace tolvane::UniversalEngine
