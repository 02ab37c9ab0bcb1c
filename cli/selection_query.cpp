#include "cli/selection_query.h"

#include "cli/host_session.h"

namespace tolvane {

Value::Map resolveSelection(const std::vector<std::string>& files) {
  HostSession host;
  Value::Map resolved;
  int heard = 0;
  host.listen([&](const Value::Map& event) {
    // The first event empties the old selection, the second is the answer.
    if (valueAt(event, "type") == Value("selectionResolved") && ++heard == 2) {
      resolved = event;
      host.loop().quit();
    }
  });
  host.bridge().select({files.begin(), files.end()});
  if (resolved.empty()) {
    host.loop().run();
  }
  return resolved;
}

}  // namespace tolvane
