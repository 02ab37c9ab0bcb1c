#include "universal/dispatch/pdf_conversion.h"

#include "engine/primitives/conversion_failure.h"
#include "formats/workbook.h"
#include "platform/files/file_system.h"
#include "platform/text/base64.h"
#include "universal/dispatch/text_rows.h"
#include "universal/documents/document_writer.h"
#include "universal/documents/pdf_table.h"
#include "universal/documents/pdf_text.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

Ocr ocrOf(const Value::Map& options) {
  return valueAt(options, "ocr").flag().value_or(true) ? Ocr::on : Ocr::off;
}

/// A slide a page, which shows the page's picture.
std::string slidesMarkdown(const std::vector<fs::path>& pictures, const CancellationToken& token) {
  std::string markdown;
  int page = 0;
  for (const fs::path& picture : pictures) {
    token.check();
    markdown += "# Page " + std::to_string(++page) + "\n\n![](data:image/png;base64," +
                Base64::encode(FileSystem::readAll(picture)) + ")\n\n";
  }
  return markdown;
}

void writeSlides(const fs::path& input, const fs::path& output, const JobContext& context) {
  const std::vector<fs::path> pictures = context.native("pdf_png", {input}, {});
  document(slidesMarkdown(pictures, context.token), output, "pptx", Markup::markdown, context);
}

void writeTable(const fs::path& input, const fs::path& output, Ocr ocr, const JobContext& context) {
  Table rows = rowsOf(pdfText(input, ocr, context));
  if (!isConsistent(rows)) {
    rows = pdfTable(input, context);
  }
  if (rows.size() < 2) {
    throw ConversionFailure::message(
        "No consistent table was recognized. PDF → Excel requires aligned columns or clearly "
        "delimited rows.");
  }
  UniversalFormats::workbook(rows, output, context.workspace, context.toolchain, context.token);
}

}  // namespace

std::vector<fs::path> convertPdf(const FileInfo& info,
                                 const std::string& target,
                                 const fs::path& output,
                                 const Value::Map& options,
                                 const JobContext& context) {
  if (target == "png" || target == "jpg") {
    return context.native(target == "png" ? "pdf_png" : "pdf_jpeg", {info.named()}, options);
  }
  const fs::path& input = info.url;
  if (target == "pptx") {
    writeSlides(input, output, context);
  } else if (target == "xlsx") {
    writeTable(input, output, ocrOf(options), context);
  } else {
    document(pdfText(input, ocrOf(options), context), output, target, Markup::plain, context);
  }
  return {output};
}

}  // namespace tolvane::UniversalEngine
