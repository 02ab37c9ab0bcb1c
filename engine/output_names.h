#pragma once

#include <string>
#include <string_view>

/// Names of placed results.
namespace tolvane::OutputNames {

/// @param attempt counted from 0; 0 gives `name` itself.
/// @return "Report.pdf", then "Report-converted-2.pdf", "Report-converted-3.pdf", ...
[[nodiscard]] std::string candidate(std::string_view name, int attempt);

}  // namespace tolvane::OutputNames
