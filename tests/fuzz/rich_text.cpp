#include "platform/text/rich_text.h"

#include "platform/text/text_encoding.h"
#include "tests/fuzz/reader.h"

/// What is read is text, and what is written of it can be read.
void read(tolvane::BytesView input) {
  using namespace tolvane;
  if (const auto text = RichText::plainText(asText(input))) {
    require(TextEncoding::isUtf8(asBytes(*text)));
    require(RichText::plainText(RichText::document(*text)).has_value());
  }
}
