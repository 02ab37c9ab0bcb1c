#pragma once

#include <string>
#include <vector>

#include "engine/primitives/value.h"

namespace tolvane {

/// Hands the files to a host like a drop and waits for its answer.
/// @param files absolute paths, or addresses, which are refused.
/// @return the payload of "selectionResolved".
[[nodiscard]] Value::Map resolveSelection(const std::vector<std::string>& files);

}  // namespace tolvane
