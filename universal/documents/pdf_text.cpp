#include "universal/documents/pdf_text.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <future>
#include <new>
#include <optional>
#include <thread>
#include <utility>
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

/// Recognizes pages beside the thread that paints them, a few at a time.
class PageRecognition {
 public:
  /// @param texts by page; each gets its text when it is known.
  PageRecognition(std::vector<std::string>& texts, const CancellationToken& token)
      : texts_(texts), token_(token) {}

  /// Waits while too many pages are being recognized. @throws as recognize() for an earlier page
  void add(std::size_t page, Bitmap picture) {
    if (running_.size() >= concurrentPages()) {
      finishOldest();
    }
    running_.push_back(
        {page, std::async(std::launch::async, [bitmap = std::move(picture), &token = token_] {
           return recognize(bitmap, token);
         })});
  }

  /// @throws as recognize() for the first page that fails.
  void finish() {
    while (!running_.empty()) {
      finishOldest();
    }
  }

 private:
  struct Running {
    std::size_t page;
    std::future<std::string> text;  // its end waits for the recognition
  };

  /// Each takes about 80 MB.
  static std::size_t concurrentPages() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
  }

  void finishOldest() {
    Running oldest = std::move(running_.front());
    running_.pop_front();
    texts_[oldest.page] = oldest.text.get();
  }

  std::vector<std::string>& texts_;
  const CancellationToken& token_;
  std::deque<Running> running_;
};

fs::path pictureFile(const JobContext& context, int page) {
  return context.workspace / fmt::format("ocr-{}.png", page);
}

/// @return by page; empty for a page without text.
std::vector<std::string> pageTexts(PdfDocument& document, Ocr ocr, const JobContext& context) {
  const int count = document.pageCount();
  std::vector<std::string> texts(static_cast<std::size_t>(count));
  PageRecognition recognition(texts, context.token);
  for (int page = 0; page < count; ++page) {
    context.token.check();
    const auto index = static_cast<std::size_t>(page);
    texts[index] = trimmed(document.text(page));
    if (!texts[index].empty() || ocr == Ocr::off) {
      continue;
    }
    Bitmap bitmap;
    if (const std::optional<Bytes> picture = painted(document, page, bitmap)) {
      FileSystem::writeAtomically(pictureFile(context, page), *picture);
      recognition.add(index, std::move(bitmap));  // the very pixels of the file
    }
  }
  recognition.finish();
  return texts;
}

}  // namespace

std::string pdfText(const fs::path& url, Ocr ocr, const JobContext& context) {
  const auto document = context.base.pdf(url);
  std::vector<std::string> texts = pageTexts(*document, ocr, context);
  std::erase(texts, "");
  if (texts.empty()) {
    throw ConversionFailure::message("No text could be extracted or recognized.");
  }
  return fmt::format("{}", fmt::join(texts, "\n\n"));
}

}  // namespace tolvane::UniversalEngine
