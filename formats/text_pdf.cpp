#include "formats/text_pdf.h"

#include <memory>
#include <string>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/platform_error.h"
#include "platform/typesetting/typesetter.h"

namespace tolvane::UniversalFormats {

namespace {

std::unique_ptr<TextPages> openPages(std::string_view text, const std::filesystem::path& to) {
  const PageStyle a4 = {.width = 595, .height = 842, .inset = 42, .font = "Sans 12"};
  Typesetter& setter = typesetter();
  try {
    return setter.open(text, a4, to);
  } catch (const PlatformError&) {
    throw ConversionFailure::message("Could not create the PDF.");
  }
}

}  // namespace

void textPDF(std::string_view text,
             const std::filesystem::path& to,
             const CancellationToken& token) {
  const std::unique_ptr<TextPages> pages = openPages(text, to);
  int count = 0;
  do {
    token.check();
    if (count == Limits::maxPages) {
      pages->finish();
      throw ConversionFailure::message("The text requires more than " +
                                       std::to_string(Limits::maxPages) + " pages.");
    }
    pages->addPage();
    ++count;
  } while (!pages->isComplete());
  pages->finish();
}

}  // namespace tolvane::UniversalFormats
