#include "catalog/text_tables.h"

#include <algorithm>

namespace tolvane::TextTables {

std::optional<std::string> entry(std::span<const Row> rows, std::string_view key) {
  const auto found =
      std::find_if(rows.begin(), rows.end(), [key](const Row& row) { return row.first == key; });
  return found != rows.end() ? std::optional<std::string>(found->second) : std::nullopt;
}

bool contains(std::span<const std::string_view> texts, std::string_view text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> choices) {
  return contains({choices.begin(), choices.size()}, text);
}

}  // namespace tolvane::TextTables
