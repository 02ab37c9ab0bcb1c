#include "platform/text/xml_property_list.h"

#include "platform/text/property_list_limits.h"
#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  try {
    static_cast<void>(tolvane::readXmlPropertyList(tolvane::asText(input)));
  } catch (const tolvane::DamagedPropertyList&) {
  }
}
