#include "platform/documents/qpdf/qpdf_library.h"

#include <algorithm>
#include <vector>

#include <qpdf/QPDF.hh>

#include "platform/documents/qpdf/composed_document.h"
#include "platform/documents/qpdf/library_errors.h"
#include "platform/documents/qpdf/opening.h"
#include "platform/documents/qpdf/source_document.h"

namespace tolvane {

std::shared_ptr<PdfDocument> QpdfLibrary::open(const std::filesystem::path& file) {
  const auto source = std::make_shared<SourceFile>(file);
  try {
    return std::make_shared<SourceDocument>(source, openedDocument(source));
  } catch (...) {
    source->checkUnchanged();  // a file that cannot be read is not a damaged one
    LibraryErrors::rethrowFromOpening();
  }
}

int QpdfLibrary::countPages(BytesView pdf) {
  try {
    QPDF document;
    document.setSuppressWarnings(true);
    document.processMemoryFile("PDF", reinterpret_cast<const char*>(pdf.data()), pdf.size());
    const std::vector<QPDFObjectHandle>& pages = document.getAllPages();
    if (!std::all_of(pages.begin(), pages.end(), [](QPDFObjectHandle page) {
          return page.isDictionary();
        })) {
      throw PdfOpenError(PdfOpenError::Reason::damaged, "A page is damaged.");
    }
    return static_cast<int>(pages.size());
  } catch (...) {
    LibraryErrors::rethrowFromOpening();
  }
}

std::unique_ptr<PdfComposer> QpdfLibrary::compose() {
  return std::make_unique<ComposedDocument>();
}

}  // namespace tolvane
