#include "universal/archives/archive_listing.h"

#include "engine/primitives/conversion_failure.h"
#include "tests/fuzz/reader.h"

/// No listing with a path to the folder above passes.
void read(tolvane::BytesView input) {
  using namespace tolvane;
  constexpr std::string_view entry = "\n\nPath = a/../../b\nSize = 1\n";
  try {
    ArchiveListing::judge(asText(input));
  } catch (const ConversionFailure&) {
    return;
  }
  try {
    ArchiveListing::judge(std::string(asText(input)).append(entry));
    require(false);
  } catch (const ConversionFailure&) {
  }
}
