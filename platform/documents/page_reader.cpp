#include "platform/documents/page_reader.h"

#include "platform/modules/module_loader.h"

namespace tolvane {

PageReaderFactory& pageReaderFactory() {
  static auto* const factory = static_cast<PageReaderFactory*>(
      ModuleLoader::load("tolvane-pages", "tolvanePageReaderFactory"));
  return *factory;
}

}  // namespace tolvane
