#pragma once

#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

/// Look-ups in the catalog's fixed tables. Texts are compared letter for letter.
namespace tolvane::TextTables {

using Row = std::pair<std::string_view, std::string_view>;

/// The text beside `key`; nullopt when no row has that key.
[[nodiscard]] std::optional<std::string> entry(std::span<const Row> rows, std::string_view key);

[[nodiscard]] bool contains(std::span<const std::string_view> texts, std::string_view text);
[[nodiscard]] bool isOneOf(std::string_view text, std::initializer_list<std::string_view> choices);

}  // namespace tolvane::TextTables
