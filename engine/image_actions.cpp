#include "engine/image_actions.h"

#include <memory>

#include "engine/native_job.h"
#include "engine/primitives/conversion_failure.h"
#include "engine/rendering.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"
#include "platform/images/image_decoder.h"

namespace tolvane {

namespace {

/// A photograph enters the PDF as the JPEG that it is; it was decoded only to see that it is whole.
void appendPicture(PdfComposer& combined,
                   const std::filesystem::path& file,
                   const Bitmap& picture) {
  try {
    if (const auto photo = readJpegPhoto(file)) {
      combined.append(*photo);
    } else {
      combined.append(picture);
    }
  } catch (const PlatformError&) {
    throw ConversionFailure::message("Could not create a PDF page from this image.");
  }
}

}  // namespace

void runImageAction(NativeJob& job) {
  job.work.expect(static_cast<int>(job.files.size()));
  const std::int64_t maxDimension =
      job.action == NativeAction::resize ? job.options.maxDimension : Limits::maxImageSide;
  std::unique_ptr<PdfComposer> combined;
  if (job.action == NativeAction::imagesPdf) {
    combined = pdfLibrary().compose();
  }
  for (const AdmittedFile& file : job.files) {
    job.token.check();
    const std::filesystem::path& url = file.info.url;
    const Bitmap picture = loadImage(url, maxDimension);
    if (combined) {
      appendPicture(*combined, url, picture);
    } else {
      job.stagePicture(FileNames::stem(file.info.named()), picture);
    }
    job.work.advance();
  }
  if (combined) {
    job.stagePdf(FileNames::stem(job.files.front().info.named()) + "-combined.pdf",
                 std::move(combined));
  }
}

}  // namespace tolvane
