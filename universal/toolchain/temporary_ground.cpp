#include "universal/toolchain/temporary_ground.h"

#include <cstdlib>
#include <vector>

#include "platform/files/platform_error.h"

namespace tolvane {

TemporaryGround::TemporaryGround(const std::string& name) {
  std::vector<std::filesystem::path> places = {"/tmp", "/var/tmp"};
  // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
  if (const char* named = std::getenv("TMPDIR"); named != nullptr && *named == '/') {
    places.emplace_back(named);
  }
  std::optional<PlatformError> trouble;
  for (const std::filesystem::path& place : places) {
    try {
      folder_.emplace(place, name + "-");
      return;
    } catch (const PlatformError& error) {
      trouble = trouble.value_or(error);
    }
  }
  throw PlatformError(*trouble);
}

}  // namespace tolvane
