#include "universal/documents/rich_text_document.h"

#include <optional>
#include <string_view>
#include <system_error>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/bytes.h"
#include "platform/files/file_system.h"
#include "platform/text/rich_text.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr const char* textOfPackage = "TXT.rtf";
constexpr std::string_view packedSignature = "rtfd";
constexpr std::string_view richTextStart = "{\\rtf";
constexpr const char* damaged = "This rich text document is damaged or unreadable.";

std::string plainTextOf(std::string_view rtf) {
  std::optional<std::string> text = RichText::plainText(rtf);
  if (!text) {
    throw ConversionFailure::message(damaged);
  }
  return *std::move(text);
}

/// The RTF text inside of a packed document, which stands there as it would in a file of its own;
/// what follows its last brace is not read.
std::string_view unpacked(std::string_view content) {
  if (!content.starts_with(packedSignature)) {
    return content;
  }
  const std::size_t start = content.find(richTextStart);
  return start == std::string_view::npos ? std::string_view() : content.substr(start);
}

/// @param document a folder, which inspection admits without looking into it.
fs::path textIn(const fs::path& document) {
  fs::path text = document / textOfPackage;
  const FileSystem::Attributes attributes = FileSystem::attributes(text);
  // A link would put another of the user's files into the result.
  std::error_code ignored;
  const bool isOwnFile = attributes.isRegularFile && !fs::is_symlink(text, ignored);
  if (!isOwnFile || attributes.size > Limits::maxInputBytes) {
    throw ConversionFailure::message(damaged);
  }
  return text;
}

}  // namespace

std::string richText(const fs::path& file) {
  return plainTextOf(asText(FileSystem::readAll(file)));
}

std::string richTextOfPackage(const fs::path& document) {
  if (FileSystem::attributes(document).isDirectory) {
    return richText(textIn(document));
  }
  return plainTextOf(unpacked(asText(FileSystem::readAll(document))));
}

fs::path richTextFileOf(const fs::path& document, const fs::path& copy) {
  if (FileSystem::attributes(document).isDirectory) {
    return textIn(document);
  }
  const Bytes content = FileSystem::readAll(document);
  const std::string_view rtf = unpacked(asText(content));
  if (!rtf.starts_with(richTextStart)) {
    throw ConversionFailure::message(damaged);
  }
  FileSystem::writeAtomically(copy, asBytes(rtf));
  return copy;
}

}  // namespace tolvane::UniversalEngine
