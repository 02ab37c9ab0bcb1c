#include "engine/native_job.h"

#include <algorithm>
#include <future>
#include <limits>
#include <optional>

#include "engine/image_actions.h"
#include "engine/job_workspace.h"
#include "engine/pdf_actions.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/rendering.h"
#include "platform/files/platform_error.h"
#include "platform/images/image_decoder.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

std::vector<AdmittedFile> admit(const ConversionEngine& engine, const Job& job) {
  if (job.inputs.empty() || job.inputs.size() > Limits::maxInputFiles) {
    throw ConversionFailure::message("Choose 1–100 files.");
  }
  job.token.check();
  std::vector<AdmittedFile> files;
  files.reserve(job.inputs.size());
  for (const fs::path& input : job.inputs) {
    files.push_back(engine.admit(input));
  }
  return files;
}

NativeAction requireAction(const std::string& id) {
  if (const auto action = nativeAction(id)) {
    return *action;
  }
  throw ConversionFailure::message("This action is unavailable.");
}

void requireFittingFiles(NativeAction action, const std::vector<AdmittedFile>& files) {
  const FileKind kind = inputKind(action);
  const bool fit = std::all_of(files.begin(), files.end(), [kind](const AdmittedFile& file) {
    return file.info.kind == kind;
  });
  if (!fit) {
    throw ConversionFailure::message(std::string("All selected files must be ") +
                                     (kind == FileKind::pdf ? "PDFs" : "images") +
                                     " for this action.");
  }
  const bool takesOne = action == NativeAction::editPdf || action == NativeAction::splitPdf;
  if (takesOne && files.size() != 1) {
    throw ConversionFailure::message("Select one PDF for this action.");
  }
}

void requireCombinableImages(const std::vector<AdmittedFile>& files) {
  constexpr double unknown = std::numeric_limits<double>::infinity();
  double area = 0;
  for (const AdmittedFile& file : files) {
    const auto header = imageDecoder().probe(file.info.url);
    area +=
        header ? static_cast<double>(header->width) * static_cast<double>(header->height) : unknown;
  }
  if (area > Limits::maxCombinedImageArea) {
    throw ConversionFailure::message(
        "Combined images exceed 40 megapixels. Resize them first or combine fewer images.");
  }
}

/// Absent when the pages do not come back from the written bytes.
std::optional<Bytes> verifiedPdf(std::unique_ptr<PdfComposer> composer) {
  try {
    Bytes bytes = composer->serialise();
    const int expected = composer->pageCount();
    // Taking hundreds of pages apart takes as long as finding them again in the bytes.
    const auto freed = std::async(std::launch::async, [&composer] { composer.reset(); });
    const int pages = bytes.empty() ? 0 : pdfLibrary().countPages(bytes);
    return pages > 0 && pages == expected ? std::optional(std::move(bytes)) : std::nullopt;
  } catch (const PlatformError&) {
    return std::nullopt;
  }
}

}  // namespace

void WorkCounter::advance(int units) {
  completed_ += units;
  if (progress_) {
    progress_(completed_, total_);
  }
}

void NativeJob::stagePicture(const std::string& stem, const Bitmap& picture) {
  const bool asJpeg = action == NativeAction::pdfJpeg || action == NativeAction::imageJpeg;
  staged.stage(encode(picture, asJpeg ? ImageFormat::jpeg : ImageFormat::png, options.quality),
               stem + (asJpeg ? ".jpg" : ".png"));
}

void NativeJob::stagePdf(const std::string& name, std::unique_ptr<PdfComposer> composer) {
  const auto bytes = verifiedPdf(std::move(composer));
  if (!bytes) {
    throw ConversionFailure::message("The resulting PDF could not be verified.");
  }
  staged.stage(*bytes, name);
}

std::vector<fs::path> runNativeJob(const ConversionEngine& engine, const Job& job) {
  std::vector<AdmittedFile> files = admit(engine, job);
  const NativeAction action = requireAction(job.action);
  requireFittingFiles(action, files);
  if (action == NativeAction::imagesPdf) {
    requireCombinableImages(files);
  }
  std::vector<fs::path> sources;
  sources.reserve(files.size());
  for (const AdmittedFile& file : files) {
    sources.push_back(file.info.url);
  }
  const fs::path folder = prepareDestination(job.destination, sources.front());
  const JobWorkspace workspace(folder);

  NativeJob native = {action,
                      std::move(files),
                      JobOptions::read(job.options),
                      job.token,
                      WorkCounter(job.progress),
                      StagedOutputs(workspace.lastingPath(), job.token)};
  if (inputKind(action) == FileKind::pdf) {
    runPdfAction(native);
  } else {
    runImageAction(native);
  }
  workspace.requireInPlace();
  return placeAll(native.staged.outputs(), folder, sources, job.token);
}

}  // namespace tolvane
