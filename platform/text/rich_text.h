#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Rich Text Format. Only the text is kept: styles, pictures, headers and footers go.
namespace tolvane::RichText {

/// The plain text of an RTF document in UTF-8: paragraphs and table rows end in a line feed, cells
/// in a tab. Understands Unicode escapes with their fallback counts, code pages and hex escapes.
/// @return nullopt when `rtf` is no RTF document or nests deeper than 10,000 groups.
[[nodiscard]] std::optional<std::string> plainText(std::string_view rtf);

/// An RTF document that shows `text` (UTF-8), pure ASCII: every other character is a Unicode
/// escape. Line ends of any kind end paragraphs.
/// @param text below 2 GiB.
[[nodiscard]] std::string document(std::string_view text);

}  // namespace tolvane::RichText
