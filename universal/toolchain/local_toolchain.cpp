#include "universal/toolchain/local_toolchain.h"

#include "platform/files/file_system.h"

namespace tolvane {

std::optional<std::filesystem::path> LocalToolchain::find(std::string_view engine) const {
  for (const std::filesystem::path& candidate : locations_.candidates(engine)) {
    if (FileSystem::isExecutableFile(candidate)) {
      return candidate;
    }
  }
  return std::nullopt;
}

}  // namespace tolvane
