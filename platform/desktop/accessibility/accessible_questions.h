#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/desktop/accessibility/accessible.h"
#include "platform/desktop/geometry.h"

namespace tolvane {

enum class Ask {
  role,
  states,
  name,
  text,
  children,
  toolkit,
  extents,
  parentRow,      ///< the rows that the element is nested in, or the view
  selectedCount,  ///< unanswered by an element that keeps no list of what is selected in it
  selectedChild,
  processIdentifier,  ///< of the owner of `element.bus`
  openLocations,      ///< of the windows of the file manager that owns `element.bus`
  hasOpenLocation,    ///< whether a window of the file manager `element.bus` shows `address`
};

struct AccessibleQuestion {
  AccessibleReference element;
  Ask ask = Ask::name;
  int index = 0;        ///< of Ask::selectedChild
  std::string address;  ///< of Ask::hasOpenLocation
};

/// Holds what its question asks for; the rest is empty.
struct AccessibleAnswer {
  bool isAnswered = false;
  std::uint64_t number = 0;  ///< role, states, count, process identifier, 1 for "yes"
  std::string text;
  std::vector<AccessibleReference> references;
  /// In points from the top-left corner of the desktop, or of the window with GTK 4; y downwards, y
  /// is the top edge.
  Rectangle extents;
  std::map<std::string, std::vector<std::string>> locations;  ///< by the window's object path
};

/// Asks other applications. Main thread only.
class AccessibleQuestions {
 public:
  using Deadline = std::chrono::steady_clock::time_point;

  AccessibleQuestions() = default;
  virtual ~AccessibleQuestions() = default;
  AccessibleQuestions(const AccessibleQuestions&) = delete;
  AccessibleQuestions& operator=(const AccessibleQuestions&) = delete;

  /// All at once. @return one answer for each question, in order; what has not come by the deadline
  /// is unanswered.
  /// @throws PlatformError when the session has no accessibility bus.
  [[nodiscard]] virtual std::vector<AccessibleAnswer> ask(
      const std::vector<AccessibleQuestion>& questions, Deadline deadline) = 0;
};

}  // namespace tolvane
