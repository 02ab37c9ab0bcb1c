#pragma once

#include <string>
#include <string_view>

namespace tolvane::UniversalFormats {

/// Escapes text for XML and HTML: & < > and the double quote. Apostrophes and control characters
/// are left as they are.
[[nodiscard]] std::string xml(std::string_view text);

}  // namespace tolvane::UniversalFormats
