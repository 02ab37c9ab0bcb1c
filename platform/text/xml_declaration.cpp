#include "platform/text/xml_declaration.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/files/file_names.h"
#include "platform/text/code_page.h"

namespace tolvane {

namespace {

struct NamedPage {
  std::string_view name;  ///< in lower case, as registered with IANA
  int codePage;
};

constexpr NamedPage namedPages[] = {{"iso-8859-1", CodePage::latin1},
                                    {"windows-1252", CodePage::windowsLatin},
                                    {"macintosh", CodePage::macRoman}};

std::string_view withoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  return text;
}

/// @param declaration what stands between "<?xml" and "?>".
/// @return empty when it names no encoding.
std::string_view encodingIn(std::string_view declaration) {
  constexpr std::string_view attribute = "encoding";
  const std::size_t start = declaration.find(attribute);
  if (start == std::string_view::npos) {
    return {};
  }
  std::string_view rest = withoutBlanks(declaration.substr(start + attribute.size()));
  if (!rest.starts_with('=')) {
    return {};
  }
  rest = withoutBlanks(rest.substr(1));
  const bool isQuoted = rest.starts_with('"') || rest.starts_with('\'');
  const std::size_t end = isQuoted ? rest.find(rest[0], 1) : std::string_view::npos;
  return end == std::string_view::npos ? std::string_view() : rest.substr(1, end - 1);
}

}  // namespace

std::optional<int> declaredCodePage(BytesView xml) {
  constexpr std::string_view start = "<?xml";
  if (!startsWith(xml, start)) {
    return std::nullopt;
  }
  const std::string_view rest = asText(xml).substr(start.size());
  const std::string name = FileNames::lower(encodingIn(rest.substr(0, rest.find("?>"))));
  const auto* const found = std::find_if(std::begin(namedPages),
                                         std::end(namedPages),
                                         [&](const NamedPage& page) { return page.name == name; });
  return found == std::end(namedPages) ? std::nullopt : std::optional(found->codePage);
}

}  // namespace tolvane
