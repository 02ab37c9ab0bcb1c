#pragma once

#include "cli/arguments.h"
#include "engine/primitives/value.h"

namespace tolvane {

/// The options of a native action from the command line's --set KEY=VALUE, each of its key's type.
/// @throws UsageError for a key that no action has and for a value of the wrong type.
[[nodiscard]] Value::Map actionOptions(const Arguments& arguments);

}  // namespace tolvane
