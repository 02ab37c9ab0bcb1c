#pragma once

#include <memory>
#include <optional>

#include "platform/desktop/accessibility/accessibility.h"
#include "platform/desktop/accessibility/accessible_questions.h"
#include "platform/desktop/accessibility/shown_file.h"
#include "platform/desktop/accessibility_tree.h"

namespace tolvane {

/// Main thread only.
class AtspiTree final : public AccessibilityTree {
 public:
  /// @param shown the file whose element an application gives as the focused one.
  AtspiTree(std::shared_ptr<AccessibleQuestions> questions,
            std::shared_ptr<std::optional<ShownFile>> shown,
            FromPrimary fromPrimary);

  [[nodiscard]] AccessibleElement::Reference application(
      std::int64_t processIdentifier, std::chrono::milliseconds messagingTimeout) override;

 private:
  std::shared_ptr<AccessibleQuestions> questions_;
  std::shared_ptr<std::optional<ShownFile>> shown_;
  FromPrimary fromPrimary_;
};

}  // namespace tolvane
