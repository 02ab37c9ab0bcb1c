#include "bridge/selection.h"

namespace tolvane {

Value::Map Selection::state() const {
  return {{"files", files}, {"message", message}, {"formats", formats}, {"tools", tools}};
}

}  // namespace tolvane
