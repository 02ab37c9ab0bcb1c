#include "engine/pdf_actions.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "engine/native_job.h"
#include "engine/page_range.h"
#include "engine/primitives/blank_text.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/rendering.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"
#include "platform/recognition/text_recognizer.h"

namespace tolvane {

namespace {

constexpr double renderingScale = 2.0;
constexpr int pointsPerInch = 72;

/// One input while its pages are worked through.
struct Input {
  std::shared_ptr<PdfDocument> document;
  std::string stem;
  std::set<int> selected;               // of "split_pdf"
  std::unique_ptr<PdfComposer> output;  // of the actions that write one PDF an input
  std::string text;                     // of the actions that write one text an input
};

/// The documents are open since their admission, so the files that were admitted are the ones that
/// are counted and worked on; they read their pages on demand.
void countWork(NativeJob& job) {
  int total = 0;
  for (const AdmittedFile& file : job.files) {
    total += file.document->pageCount();
  }
  const int limit =
      job.action == NativeAction::mergePdf ? Limits::maxPages : Limits::maxPagesPerJob;
  if (total > limit) {
    throw ConversionFailure::message(
        "Use at most 500 pages in a merged PDF and 1,000 pages in other jobs.");
  }
  job.work.expect(total);
}

/// Runs one step on a page; a page that the library cannot read ends the job with our sentence.
template <typename Step>
auto onReadablePage(const Step& step) {
  try {
    return step();
  } catch (const PlatformError&) {
    throw ConversionFailure::message("Cannot read this page.");
  }
}

/// For every action, so that none fails over the page with a sentence about something else, or
/// passes over it.
void requireReadable(PdfDocument& document, int page) {
  onReadablePage([&] { return document.geometry(page); });
}

/// @param turn degrees added to the page's own rotation. The remainder keeps the sign of the sum.
void appendTurned(PdfComposer& output,
                  const std::shared_ptr<PdfDocument>& document,
                  int page,
                  std::int64_t turn) {
  onReadablePage([&] {
    const std::int64_t rotation = document->geometry(page).rotation + turn % 360;
    output.append(document, page, static_cast<int>(rotation % 360));
  });
}

void appendCopy(PdfComposer& output, const std::shared_ptr<PdfDocument>& document, int page) {
  onReadablePage([&] { output.append(document, page, std::nullopt); });
}

std::string textLayer(PdfDocument& document, int page) {
  return onReadablePage([&] { return document.text(page); });
}

std::string recognizedText(NativeJob& job, PdfDocument& document, int page, Bitmap& bitmap) {
  render(document, page, renderingScale, bitmap);
  const int dotsPerInch = static_cast<int>(renderingScale * pointsPerInch);
  const std::vector<std::string> lines =
      textRecognizer().lines(bitmap, dotsPerInch, [&job] { return job.token.isCancelled(); });
  job.token.check();
  return fmt::format("{}", fmt::join(lines, "\n"));
}

void stagePagePicture(NativeJob& job, const Input& input, int page, Bitmap& bitmap) {
  render(*input.document, page, renderingScale, bitmap);
  job.stagePicture(fmt::format("{}-page-{}", input.stem, page + 1), bitmap);
}

void processPage(NativeJob& job, Input& input, int page, PdfComposer& combined, Bitmap& bitmap) {
  switch (job.action) {
    case NativeAction::pdfPng:
    case NativeAction::pdfJpeg:
      stagePagePicture(job, input, page, bitmap);
      break;
    case NativeAction::rotatePdf:
      appendTurned(*input.output, input.document, page, 90);
      break;
    case NativeAction::mergePdf:
      appendCopy(combined, input.document, page);
      break;
    case NativeAction::splitPdf:
      if (input.selected.contains(page)) {
        appendCopy(*input.output, input.document, page);
      }
      break;
    case NativeAction::extractText:
      input.text += textLayer(*input.document, page) + "\n\n";
      break;
    case NativeAction::ocr:
      input.text += recognizedText(job, *input.document, page, bitmap) + "\n\n";
      break;
    case NativeAction::editPdf:  // takes its pages in an order of its own
    case NativeAction::imagePng:
    case NativeAction::imageJpeg:
    case NativeAction::imagesPdf:
    case NativeAction::resize:
      break;
  }
}

struct TextFile {
  const char* suffix;
  const char* refusalWhenBlank;
};

void stageText(NativeJob& job, const Input& input, const TextFile& file) {
  if (isBlank(input.text)) {
    throw ConversionFailure::message(file.refusalWhenBlank);
  }
  job.staged.stage(asBytes(input.text), input.stem + file.suffix);
}

void finishInput(NativeJob& job, Input& input) {
  switch (job.action) {
    case NativeAction::rotatePdf:
      job.stagePdf(input.stem + "-rotated.pdf", std::move(input.output));
      break;
    case NativeAction::splitPdf:
      job.stagePdf(input.stem + "-split.pdf", std::move(input.output));
      break;
    case NativeAction::extractText:
      stageText(job,
                input,
                {.suffix = "-text.txt",
                 .refusalWhenBlank = "No selectable text was found. Try Recognize text (OCR)."});
      break;
    case NativeAction::ocr:
      stageText(job,
                input,
                {.suffix = "-ocr.txt",
                 .refusalWhenBlank = "No text was recognized. Try a clearer scan."});
      break;
    case NativeAction::pdfPng:
    case NativeAction::pdfJpeg:
    case NativeAction::mergePdf:
    case NativeAction::editPdf:
    case NativeAction::imagePng:
    case NativeAction::imageJpeg:
    case NativeAction::imagesPdf:
    case NativeAction::resize:
      break;
  }
}

void processPages(NativeJob& job, Input& input, PdfComposer& combined, Bitmap& bitmap) {
  const int count = input.document->pageCount();
  input.output = pdfLibrary().compose();
  input.selected = pageRange(job.options.range, count);
  for (int page = 0; page < count; ++page) {
    job.token.check();
    requireReadable(*input.document, page);
    processPage(job, input, page, combined, bitmap);
    job.work.advance();
  }
  finishInput(job, input);
}

/// The pages that the edited document is to hold, in its order.
std::vector<int> editedPages(const NativeJob& job, int count) {
  std::vector<int> pages;
  if (!job.options.pages) {
    for (int page = 0; page < count; ++page) {
      pages.push_back(page);
    }
    return pages;
  }
  std::set<std::int64_t> seen;
  for (const std::int64_t page : *job.options.pages) {
    if (page >= 0 && page < count && seen.insert(page).second) {
      pages.push_back(static_cast<int>(page));
    }
  }
  if (pages.empty() || pages.size() != job.options.pages->size()) {
    throw ConversionFailure::message("Keep at least one page and use each page only once.");
  }
  return pages;
}

void editPages(NativeJob& job, const Input& input) {
  const int count = input.document->pageCount();
  auto output = pdfLibrary().compose();
  for (const int page : editedPages(job, count)) {
    job.token.check();
    const auto found = job.options.rotations.find(std::to_string(page));
    const std::int64_t turn = found != job.options.rotations.end() ? found->second : 0;
    // First, because a page that cannot be read is reported before its rotation.
    appendTurned(*output, input.document, page, turn);
    if (turn % 90 != 0) {
      throw ConversionFailure::message("Use quarter-turn page rotations.");
    }
  }
  job.stagePdf(input.stem + "-edited.pdf", std::move(output));
  job.work.advance(count);
}

}  // namespace

void runPdfAction(NativeJob& job) {
  countWork(job);
  auto combined = pdfLibrary().compose();
  Bitmap bitmap;
  for (AdmittedFile& file : job.files) {
    job.token.check();
    // Taken out of the list, so that an input's pages are freed before the next input's are read.
    Input input = {
        std::exchange(file.document, nullptr), FileNames::stem(file.info.named()), {}, nullptr, {}};
    if (job.action == NativeAction::editPdf) {
      editPages(job, input);
    } else {
      processPages(job, input, *combined, bitmap);
    }
  }
  if (job.action == NativeAction::mergePdf) {
    job.stagePdf(FileNames::stem(job.files.front().info.named()) + "-combined.pdf",
                 std::move(combined));
  }
}

}  // namespace tolvane
