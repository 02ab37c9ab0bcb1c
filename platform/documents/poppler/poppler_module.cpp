#include "platform/documents/poppler/poppler_page_reader.h"

/// What the module loader calls. The factory lives as long as the process.
extern "C" __attribute__((visibility("default"))) void* tolvanePageReaderFactory() {
  static tolvane::PopplerPageReaderFactory factory;
  return static_cast<tolvane::PageReaderFactory*>(&factory);
}
