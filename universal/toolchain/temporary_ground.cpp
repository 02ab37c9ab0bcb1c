#include "universal/toolchain/temporary_ground.h"

#include <cstdlib>
#include <optional>
#include <vector>

#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;

fs::path makeFolder(const std::string& name) {
  std::vector<fs::path> places = {"/tmp", "/var/tmp"};
  // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
  if (const char* named = std::getenv("TMPDIR"); named != nullptr && *named == '/') {
    places.emplace_back(named);
  }
  std::optional<PlatformError> trouble;
  for (const fs::path& place : places) {
    try {
      fs::path folder = place / (name + "-" + FileSystem::newUuid());
      FileSystem::createDirectory(folder, FileSystem::ownerOnly);
      return folder;
    } catch (const PlatformError& error) {
      trouble = trouble.value_or(error);
    }
  }
  throw PlatformError(*trouble);
}

}  // namespace

TemporaryGround::TemporaryGround(const std::string& name) : path_(makeFolder(name)) {}

TemporaryGround::~TemporaryGround() {
  FileSystem::removeQuietly(path_);
}

}  // namespace tolvane
