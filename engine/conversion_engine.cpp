#include "engine/conversion_engine.h"

#include "engine/native_job.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/rendering.h"
#include "platform/files/file_system.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

std::shared_ptr<PdfDocument> openWhole(const fs::path& url) {
  try {
    return pdfLibrary().open(url);
  } catch (const PdfOpenError& error) {
    throw ConversionFailure::message(
        error.reason() == PdfOpenError::Reason::locked
            ? "Unlock this password-protected PDF in Preview and save a copy first."
            : "This PDF is damaged or unreadable.");
  } catch (const PlatformError&) {
    throw ConversionFailure::message("This PDF is damaged or unreadable.");
  }
}

}  // namespace

std::shared_ptr<PdfDocument> ConversionEngine::pdf(const fs::path& url) const {
  auto document = openWhole(url);
  if (document->pageCount() < 1 || document->pageCount() > maxPages) {
    throw ConversionFailure::message("PDFs must contain 1–500 pages.");
  }
  return document;
}

std::vector<fs::path> ConversionEngine::run(const Job& job) const {
  if (job.action != "universal") {
    return runNativeJob(*this, job);
  }
  if (!universal_) {
    throw ConversionFailure::message("This action is unavailable.");
  }
  return universal_(*this, job);
}

Bytes ConversionEngine::thumbnail(const fs::path& url, std::int64_t index) const {
  return preview(*pdf(FileSystem::resolved(url)), index);
}

}  // namespace tolvane
