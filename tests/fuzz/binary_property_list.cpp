#include "platform/text/binary_property_list.h"

#include "platform/text/property_list_limits.h"
#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  try {
    static_cast<void>(tolvane::readBinaryPropertyList(input));
  } catch (const tolvane::DamagedPropertyList&) {
  }
}
