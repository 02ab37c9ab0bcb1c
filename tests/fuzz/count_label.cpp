#include "platform/desktop/accessibility/count_label.h"

#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  using namespace tolvane;
  const std::string name = CountLabel::quotedName(asText(input));
  static_cast<void>(CountLabel::confirms(asText(input), {name}));
  static_cast<void>(CountLabel::confirms(asText(input), {"a", "b"}));
}
