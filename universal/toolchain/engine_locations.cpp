#include "universal/toolchain/engine_locations.h"

namespace tolvane {

EngineLocations EngineLocations::standard() {
  return {{"/home/linuxbrew/.linuxbrew/bin", "/usr/local/bin", "/usr/bin"}, {}};
}

std::vector<std::filesystem::path> EngineLocations::candidates(std::string_view engine) const {
  if (const auto found = special.find(engine); found != special.end()) {
    return found->second;
  }
  std::vector<std::filesystem::path> paths;
  for (const std::filesystem::path& folder : folders) {
    paths.push_back(folder / engine);
  }
  return paths;
}

}  // namespace tolvane
