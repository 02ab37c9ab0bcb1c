#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/accessibility/accessible_questions.h"
#include "platform/desktop/accessibility/file_manager_facts.h"
#include "platform/desktop/accessibility/window_tree.h"

namespace tolvane {

/// Reads the active window of a file manager, level by level: what cannot hold files or their
/// folder is left out. Main thread only.
class TreeReader {
 public:
  using Deadline = AccessibleQuestions::Deadline;

  /// @param questions not owned; outlives this object.
  TreeReader(AccessibleQuestions& questions, Deadline deadline)
      : questions_(questions), deadline_(deadline) {}

  /// The element of a process's application; nullopt when none of its elements are on the bus.
  [[nodiscard]] std::optional<AccessibleReference> application(std::int64_t processIdentifier);
  /// @return nullopt when the element does not answer.
  [[nodiscard]] std::optional<std::string> name(const AccessibleReference& element);

  /// @param title of the window in front, by which it is told from others while none of them has
  ///   the keyboard.
  /// @return nullopt when it is not certain which window is the active one, or when the deadline
  /// passed before all was read.
  [[nodiscard]] std::optional<WindowNode> activeWindow(const AccessibleReference& application,
                                                       const std::string& title,
                                                       const FileManagerFacts& facts);

 private:
  struct Place;
  using References = std::vector<AccessibleReference>;
  using Answers = std::vector<AccessibleAnswer>;

  Answers askEach(const References& elements, std::initializer_list<Ask> asks);
  std::optional<AccessibleReference> activeFrame(const AccessibleReference& application,
                                                 const std::string& title);
  References framesOf(const std::string& title, const References& frames);
  bool readLevel(std::vector<Place>& level, const FileManagerFacts& facts);
  std::vector<References> readNodes(const std::vector<Place>& level);
  ViewSelection selectionIn(const References& cells, const AccessibleReference& view);
  ViewSelection listedSelection(const AccessibleReference& view, std::size_t count);
  ViewSelection scannedSelection(const References& cells);
  void readTexts(WindowNode& root);
  void readCellTexts(ViewSelection& selection);

  AccessibleQuestions& questions_;
  Deadline deadline_;
};

}  // namespace tolvane
