#include "formats/subtitles.h"

#include "engine/primitives/conversion_failure.h"
#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  using namespace tolvane;
  for (const char* target : {"srt", "vtt", "txt"}) {
    try {
      static_cast<void>(UniversalFormats::subtitles(asText(input), target));
    } catch (const ConversionFailure&) {
    }
  }
}
