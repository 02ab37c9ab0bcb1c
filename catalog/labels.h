#pragma once

#include <optional>
#include <string>
#include <string_view>

/// How offers are called.
namespace tolvane::Labels {

/// @param id a conversion target or the name of a tool.
/// @return its title; nullopt when the id itself, suitably spelled, makes a good one.
[[nodiscard]] std::optional<std::string> title(std::string_view id);

/// The word with its first letter in upper case. ASCII.
[[nodiscard]] std::string capitalized(std::string_view word);

}  // namespace tolvane::Labels
