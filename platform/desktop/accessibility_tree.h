#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/geometry.h"

namespace tolvane {

/// One element of another application's interface. Every call may ask that application, and takes
/// no longer than the tree's messaging timeout; what it does not tell is absent. Main thread only.
class AccessibleElement {
 public:
  using Reference = std::shared_ptr<const AccessibleElement>;

  AccessibleElement() = default;
  virtual ~AccessibleElement() = default;
  AccessibleElement(const AccessibleElement&) = delete;
  AccessibleElement& operator=(const AccessibleElement&) = delete;

  /// AXURL: the text of a URL, of the file that the element shows.
  [[nodiscard]] virtual std::optional<std::string> url() const = 0;
  /// AXSelected.
  [[nodiscard]] virtual std::optional<bool> isSelected() const = 0;
  /// AXTitle.
  [[nodiscard]] virtual std::optional<std::string> title() const = 0;
  /// AXPosition: of the top-left corner, with the origin at the top-left corner of the primary
  /// screen and y downwards.
  [[nodiscard]] virtual std::optional<Point> position() const = 0;
  /// AXSize.
  [[nodiscard]] virtual std::optional<Size> size() const = 0;
  /// The first `limit` entries of AXChildren.
  [[nodiscard]] virtual std::vector<Reference> children(std::size_t limit) const = 0;
  /// The first `limit` entries of AXSelectedChildren.
  [[nodiscard]] virtual std::vector<Reference> selectedChildren(std::size_t limit) const = 0;
  /// AXFocusedUIElement; nullptr when absent. An application whose tree is wide tells here, at
  /// once, the element of the file that is selected in it.
  [[nodiscard]] virtual Reference focusedElement() const = 0;
};

class AccessibilityTree {
 public:
  AccessibilityTree() = default;
  virtual ~AccessibilityTree() = default;
  AccessibilityTree(const AccessibilityTree&) = delete;
  AccessibilityTree& operator=(const AccessibilityTree&) = delete;

  /// @param messagingTimeout of each later question to an element of this application.
  /// @return the element of the application itself; nullptr when it cannot be reached.
  [[nodiscard]] virtual AccessibleElement::Reference application(
      std::int64_t processIdentifier, std::chrono::milliseconds messagingTimeout) = 0;
};

}  // namespace tolvane
