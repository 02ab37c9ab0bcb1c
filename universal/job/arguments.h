#pragma once

#include <string>
#include <vector>

namespace tolvane::UniversalEngine {

/// What stands behind the name of an engine on its command line.
using Arguments = std::vector<std::string>;

}  // namespace tolvane::UniversalEngine
