#include "engine/json/value_json.h"
#include "tests/fuzz/reader.h"

/// What was parsed is the same when it was written and parsed again.
void read(tolvane::BytesView input) {
  using namespace tolvane;
  Value value;
  try {
    value = ValueJson::parse(asText(input));
  } catch (const ValueJson::ParseError&) {
    return;
  }
  const std::string text = ValueJson::write(value);
  require(ValueJson::write(ValueJson::parse(text)) == text);
}
