#include "platform/desktop/user_folders.h"

#include <cstdlib>

#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

/// Relative paths are to be ignored; so says the rule for these variables.
std::filesystem::path folderNamedBy(const char* variable) {
  const char* value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): nobody sets any
  return value != nullptr && *value == '/' ? value : "";
}

}  // namespace

std::filesystem::path UserFolders::configuration() {
  if (auto folder = folderNamedBy("XDG_CONFIG_HOME"); !folder.empty()) {
    return folder;
  }
  const auto home = folderNamedBy("HOME");
  if (home.empty()) {
    throw PlatformError("Could not find the folder for settings: HOME is not set.");
  }
  return home / ".config";
}

}  // namespace tolvane
