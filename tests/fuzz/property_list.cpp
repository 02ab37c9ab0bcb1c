#include "platform/text/property_list.h"

#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  static_cast<void>(tolvane::PropertyList::parse(input));
}
