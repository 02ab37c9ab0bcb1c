#include "engine/page_range.h"

#include "engine/primitives/conversion_failure.h"
#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  constexpr int count = 500;
  try {
    for (const int page : tolvane::pageRange(tolvane::asText(input), count)) {
      require(page >= 0 && page < count);
    }
  } catch (const tolvane::ConversionFailure&) {
  }
}
