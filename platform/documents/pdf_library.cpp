#include "platform/documents/pdf_document.h"
#include "platform/modules/module_loader.h"

namespace tolvane {

PdfLibrary& pdfLibrary() {
  static auto* const library =
      static_cast<PdfLibrary*>(ModuleLoader::load("tolvane-documents", "tolvanePdfLibrary"));
  return *library;
}

}  // namespace tolvane
