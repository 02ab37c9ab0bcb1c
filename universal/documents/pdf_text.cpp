#include "universal/documents/pdf_text.h"

#include <new>
#include <optional>
#include <vector>

#include <fmt/format.h>

#include "engine/primitives/blank_text.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/rendering.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/images/image_encoder.h"
#include "universal/documents/recognition.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

// What a page's picture must fit into, in pixels.
constexpr double pictureWidth = 1800;
constexpr double pictureHeight = 2400;

/// @return the PNG file; nullopt when the page cannot be painted or encoded.
std::optional<Bytes> painted(PdfDocument& document, int page, Bitmap& bitmap) try {
  if (!renderWithin(document, page, pictureWidth, pictureHeight, bitmap)) {
    return std::nullopt;
  }
  return ImageEncoder::png(bitmap);
} catch (const PlatformError&) {
  return std::nullopt;
} catch (const std::bad_alloc&) {
  return std::nullopt;
}

/// @param bitmap its memory is reused from page to page.
/// @return nullopt when the page yields no picture.
std::optional<std::string> recognizedText(PdfDocument& document,
                                          int page,
                                          const JobContext& context,
                                          Bitmap& bitmap) {
  const std::optional<Bytes> picture = painted(document, page, bitmap);
  if (!picture) {
    return std::nullopt;
  }
  FileSystem::writeAtomically(context.workspace / fmt::format("ocr-{}.png", page), *picture);
  // The file holds these very pixels.
  return recognize(bitmap, context.token);
}

}  // namespace

std::string pdfText(const fs::path& url, Ocr ocr, const JobContext& context) {
  const auto document = context.base.pdf(url);
  std::vector<std::string> texts;
  Bitmap bitmap;
  for (int page = 0; page < document->pageCount(); ++page) {
    context.token.check();
    const std::string layer = document->text(page);
    if (const std::string_view text = trimmed(layer); !text.empty()) {
      texts.emplace_back(text);
    } else if (ocr == Ocr::on) {
      if (auto recognized = recognizedText(*document, page, context, bitmap)) {
        texts.push_back(*std::move(recognized));
      }
    }
  }
  std::string joined = fmt::format("{}", fmt::join(texts, "\n\n"));
  if (joined.empty()) {
    throw ConversionFailure::message("No text could be extracted or recognized.");
  }
  return joined;
}

}  // namespace tolvane::UniversalEngine
