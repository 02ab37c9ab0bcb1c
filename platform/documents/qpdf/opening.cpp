#include "platform/documents/qpdf/opening.h"

#include <qpdf/QPDF.hh>

#include "platform/documents/qpdf/source_input.h"

namespace tolvane {

std::shared_ptr<QPDF> openedDocument(const std::shared_ptr<SourceFile>& file) {
  std::shared_ptr<QPDF> document = QPDF::create();
  document->setSuppressWarnings(true);
  document->processInputSource(inputFrom(file));
  return document;
}

}  // namespace tolvane
