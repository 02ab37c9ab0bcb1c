#include "platform/typesetting/typesetter.h"

#include "platform/modules/module_loader.h"

namespace tolvane {

Typesetter& typesetter() {
  static auto* const found =
      static_cast<Typesetter*>(ModuleLoader::load("tolvane-typesetting", "tolvaneTypesetter"));
  return *found;
}

}  // namespace tolvane
