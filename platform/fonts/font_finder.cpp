#include "platform/fonts/font_finder.h"

#include "platform/modules/module_loader.h"

namespace tolvane {

FontFinder& fontFinder() {
  static FontFinder& finder =
      *static_cast<FontFinder*>(ModuleLoader::load("tolvane-fonts", "tolvaneFontFinder"));
  return finder;
}

}  // namespace tolvane
