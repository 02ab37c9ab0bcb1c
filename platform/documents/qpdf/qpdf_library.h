#pragma once

#include <filesystem>
#include <memory>

#include "platform/documents/pdf_document.h"

namespace tolvane {

/// Opens and writes with libqpdf, renders through a PageReader.
class QpdfLibrary : public PdfLibrary {
 public:
  std::shared_ptr<PdfDocument> open(const std::filesystem::path& file) override;
  int countPages(BytesView pdf) override;
  std::unique_ptr<PdfComposer> compose() override;
};

}  // namespace tolvane
