#include "universal/documents/read_text.h"

#include "formats/text_clipping.h"
#include "platform/files/file_names.h"
#include "platform/text/text_file.h"
#include "universal/documents/pandoc.h"
#include "universal/documents/rich_text_document.h"

namespace tolvane::UniversalEngine {

namespace {

std::string extractedText(const FileInfo& info,
                          const std::string& extension,
                          const JobContext& context) {
  const auto extracted = context.freshFile("extracted-", ".txt");
  pandoc(context, reader(extension), "plain", info.url, extracted);
  return TextFile::read(extracted);
}

}  // namespace

std::string readText(const FileInfo& info, const JobContext& context) {
  const std::string extension = FileNames::lowerExtension(info.url);
  if (extension == "txt" || extension == "md" || extension == "markdown") {
    return TextFile::read(info.url);
  }
  if (extension == "rtf") {
    return richText(info.url);
  }
  if (extension == "rtfd") {
    return richTextOfPackage(info.url);
  }
  if (extension == "textclipping") {
    return UniversalFormats::clippingText(info.url);
  }
  return extractedText(info, extension, context);
}

}  // namespace tolvane::UniversalEngine
