#pragma once

#include "platform/desktop/accessibility_tree.h"
#include "platform/desktop/file_manager_selection.h"

namespace tolvane {

/// A session whose file managers do not tell what is selected in them.
class NoFileManagerSelection final : public FileManagerSelection {
 public:
  [[nodiscard]] std::vector<Item> items(const RunningApplication&) override { return {}; }
};

/// A session whose applications do not show their elements.
class NoAccessibilityTree final : public AccessibilityTree {
 public:
  [[nodiscard]] AccessibleElement::Reference application(std::int64_t,
                                                         std::chrono::milliseconds) override {
    return nullptr;
  }
};

}  // namespace tolvane
