#include "platform/desktop/accessibility/accessibility.h"

#include <cstdlib>
#include <utility>

#include "platform/desktop/accessibility/accessibility_bus.h"
#include "platform/desktop/accessibility/atspi_file_manager_selection.h"
#include "platform/desktop/accessibility/atspi_tree.h"

namespace tolvane {

Accessibility atspiAccessibility(WindowPlaces places, FromPrimary fromPrimary) {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
  const char* const home = std::getenv("HOME");
  auto questions = std::make_shared<AccessibilityBus>();
  auto shown = std::make_shared<std::optional<ShownFile>>();
  auto selection = std::make_unique<AtspiFileManagerSelection>(
      questions, std::move(places), home == nullptr ? "" : home, shown);
  return {std::move(selection),
          std::make_unique<AtspiTree>(std::move(questions), shown, std::move(fromPrimary))};
}

}  // namespace tolvane
