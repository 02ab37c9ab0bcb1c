#pragma once

#include <memory>

#include "platform/desktop/accessibility/accessible_questions.h"

namespace tolvane {

/// The accessibility bus of the session, and the session bus for what file managers tell there.
/// Connects when first asked, and again after the bus went away. Main thread only; runs no events
/// of anybody else while it waits.
class AccessibilityBus final : public AccessibleQuestions {
 public:
  AccessibilityBus();
  ~AccessibilityBus() override;
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;

  [[nodiscard]] std::vector<AccessibleAnswer> ask(const std::vector<AccessibleQuestion>& questions,
                                                  Deadline deadline) override;

 private:
  class Connections;
  std::unique_ptr<Connections> connections_;
};

}  // namespace tolvane
