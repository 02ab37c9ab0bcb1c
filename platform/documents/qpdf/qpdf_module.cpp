#include "platform/documents/qpdf/qpdf_library.h"

/// What the module loader calls. The library object lives as long as the process.
extern "C" __attribute__((visibility("default"))) void* tolvanePdfLibrary() {
  static tolvane::QpdfLibrary library;
  return static_cast<tolvane::PdfLibrary*>(&library);
}
