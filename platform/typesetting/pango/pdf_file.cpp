#include "platform/typesetting/pango/pdf_file.h"

#include <cerrno>

#include <cairo-pdf.h>

#include "platform/files/platform_error.h"

namespace tolvane {

PdfFile::PdfFile(const std::filesystem::path& path, double width, double height)
    : path_(path), file_(std::fopen(path.c_str(), "wbe")) {
  if (!file_) {
    throw PlatformError::fromErrno("create", path_, errno);
  }
  surface_.reset(cairo_pdf_surface_create_for_stream(&PdfFile::write, this, width, height));
  cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATE_DATE, nullptr);
  context_.reset(cairo_create(surface_.get()));
  check(cairo_status(context_.get()));
}

PdfFile::~PdfFile() = default;

cairo_status_t PdfFile::write(void* self, const unsigned char* bytes, unsigned count) {
  auto* const pdf = static_cast<PdfFile*>(self);
  if (std::fwrite(bytes, 1, count, pdf->file_.get()) != count) {
    pdf->writeError_ = errno;
    return CAIRO_STATUS_WRITE_ERROR;
  }
  return CAIRO_STATUS_SUCCESS;
}

void PdfFile::check(cairo_status_t status) const {
  if (writeError_ != 0) {
    throw PlatformError::fromErrno("write", path_, writeError_);
  }
  if (status != CAIRO_STATUS_SUCCESS) {
    throw PlatformError(cairo_status_to_string(status));
  }
}

void PdfFile::endPage() {
  cairo_show_page(context_.get());
  check(cairo_status(context_.get()));
}

void PdfFile::finish() {
  cairo_surface_finish(surface_.get());
  check(cairo_surface_status(surface_.get()));
  if (std::fflush(file_.get()) != 0) {
    throw PlatformError::fromErrno("write", path_, errno);
  }
}

}  // namespace tolvane
