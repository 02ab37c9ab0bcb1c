#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

/// Takes the XML of a property list apart: elements, whose attributes do not matter, and text.
/// Every member throws DamagedPropertyList where the XML is not well-formed.
class XmlScanner {
 public:
  /// @param xml UTF-8; outlives this object and the names it gives.
  explicit XmlScanner(std::string_view xml) : rest_(xml) {}

  /// Enters the next element inside `parent` (empty: of the whole). Comments, instructions and the
  /// document type before it are passed over; text before it is an error.
  /// @return its name, or nullopt when `parent` ends here.
  [[nodiscard]] std::optional<std::string_view> nextChild(std::string_view parent);

  /// The text of the element that was just entered, entities replaced. Leaves the element.
  [[nodiscard]] std::string text(std::string_view element);

 private:
  [[nodiscard]] bool skip(std::string_view prefix);
  [[nodiscard]] std::string_view takeUntil(std::string_view end);
  [[nodiscard]] std::string_view takeName();
  void skipBetweenElements();
  void skipDocumentType();
  void skipAttributes();
  void takeEntity(std::string& text);
  [[nodiscard]] std::string characters();

  std::string_view rest_;
  bool isInEmptyElement_ = false;  // "<array/>" was entered, and its end is the next thing met
};

}  // namespace tolvane
