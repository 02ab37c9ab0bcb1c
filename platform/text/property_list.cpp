#include "platform/text/property_list.h"

#include <algorithm>
#include <string_view>

#include "platform/text/binary_property_list.h"
#include "platform/text/code_page.h"
#include "platform/text/property_list_limits.h"
#include "platform/text/text_encoding.h"
#include "platform/text/text_property_list.h"
#include "platform/text/xml_declaration.h"
#include "platform/text/xml_property_list.h"

namespace tolvane {

namespace {

/// The text in UTF-8 without a byte-order mark.
std::optional<std::string> textOf(BytesView bytes) {
  if (startsWith(bytes, "\xFF\xFE") || startsWith(bytes, "\xFE\xFF")) {
    return TextEncoding::fromUtf16(bytes);
  }
  if (const std::optional<int> codePage = declaredCodePage(bytes)) {
    std::string text;
    CodePage(*codePage).append(bytes, text);
    return text;
  }
  constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
  return TextEncoding::fromUtf8(startsWith(bytes, utf8Mark) ? bytes.subspan(utf8Mark.size())
                                                            : bytes);
}

/// An old-style list may start with '<' too, but hexadecimal digits follow there.
bool isXml(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  return text.starts_with("<?") || text.starts_with("<!") || text.starts_with("<plist");
}

PropertyList read(BytesView bytes) {
  if (startsWith(bytes, "bplist0")) {
    return readBinaryPropertyList(bytes);
  }
  const std::optional<std::string> text = textOf(bytes);
  if (!text) {
    throw DamagedPropertyList();
  }
  return isXml(*text) ? readXmlPropertyList(*text) : readTextPropertyList(*text);
}

}  // namespace

std::optional<PropertyList> PropertyList::parse(BytesView bytes) {
  try {
    return read(bytes);
  } catch (const DamagedPropertyList&) {
    return std::nullopt;
  }
}

}  // namespace tolvane
