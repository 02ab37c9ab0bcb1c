#include "platform/text/text_encoding.h"

#include "platform/text/code_page.h"
#include "platform/text/xml_declaration.h"
#include "tests/fuzz/reader.h"

/// Whatever is decoded is text.
void read(tolvane::BytesView input) {
  using namespace tolvane;
  require(TextEncoding::isUtf8(asBytes(TextEncoding::fromMacRoman(input))));
  require(TextEncoding::fromUtf8(input).has_value() == TextEncoding::isUtf8(input));
  if (const auto text = TextEncoding::fromUtf16(input)) {
    require(TextEncoding::isUtf8(asBytes(*text)));
  }
  static const CodePage shiftJis(932);
  std::string text;
  shiftJis.append(input, text);
  require(TextEncoding::isUtf8(asBytes(text)));
  static_cast<void>(declaredCodePage(input));
}
