#include "formats/delimited_text.h"

#include <algorithm>

#include "engine/primitives/conversion_failure.h"
#include "platform/text/text_encoding.h"
#include "tests/fuzz/reader.h"

namespace {

bool isAscii(char character) {
  return static_cast<unsigned char>(character) < 0x80;
}

}  // namespace

/// A table that was read is the same when it was written and read again, unless something may
/// combine with its quotes and delimiters.
void read(tolvane::BytesView input) {
  using namespace tolvane;
  const auto text = TextEncoding::fromUtf8(input);
  for (const char delimiter : {',', '\t'}) {
    Table rows;
    try {
      rows = UniversalFormats::csv(text.value_or(""), delimiter);
    } catch (const ConversionFailure&) {
      continue;
    }
    const std::string written = UniversalFormats::delimited(rows, delimiter);
    require(rows.empty() || !std::ranges::all_of(written, isAscii) ||
            UniversalFormats::csv(written, delimiter) == rows);
  }
}
