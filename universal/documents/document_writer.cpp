#include "universal/documents/document_writer.h"

#include <string>

#include "formats/xml_text.h"
#include "platform/files/file_system.h"
#include "platform/text/rich_text.h"
#include "universal/documents/pandoc.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view escapedInMarkdownFiles = "\\`*_<>#[]";
constexpr std::string_view escapedForPandoc = "\\`*_{}[]<>()#+-.!|";
constexpr std::string_view hardLineBreak = "  \n";

void write(std::string_view text, const fs::path& file) {
  FileSystem::writeAtomically(file, asBytes(text));
}

/// @param characters ASCII.
std::string escaped(std::string_view text, std::string_view characters) {
  std::string result;
  result.reserve(text.size() + text.size() / 8);
  for (const char character : text) {
    if (characters.find(character) != std::string_view::npos) {
      result += '\\';
    }
    result += character;
  }
  return result;
}

/// Markdown that pandoc reads as `text`, line by line.
std::string markdownOf(std::string_view text) {
  const std::string escapedText = escaped(text, escapedForPandoc);
  std::string markdown;
  markdown.reserve(escapedText.size());
  for (const char character : escapedText) {
    if (character == '\n') {
      markdown += hardLineBreak;
    } else {
      markdown += character;
    }
  }
  return markdown;
}

std::string htmlOf(std::string_view text) {
  return "<!doctype html><meta charset=\"utf-8\"><pre>" + UniversalFormats::xml(text) + "</pre>";
}

}  // namespace

void document(std::string_view text,
              const fs::path& to,
              std::string_view format,
              Markup markup,
              const JobContext& context) {
  const bool isPlain = markup == Markup::plain;
  if (format == "txt") {
    write(text, to);
  } else if (format == "md" && isPlain) {
    write(escaped(text, escapedInMarkdownFiles), to);
  } else if (format == "rtf") {
    write(RichText::document(text), to);
  } else if (format == "html" && isPlain) {
    write(htmlOf(text), to);
  } else {
    const fs::path markdown = context.freshFile("document-", ".md");
    write(isPlain ? markdownOf(text) : text, markdown);
    pandoc(context, "markdown", writer(format), markdown, to);
  }
}

}  // namespace tolvane::UniversalEngine
