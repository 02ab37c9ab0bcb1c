#include "platform/files/platform_error.h"

#include <system_error>

namespace tolvane {

PlatformError PlatformError::fromErrno(std::string_view action,
                                       const std::filesystem::path& path,
                                       int code) {
  const std::string object = path.empty() ? "" : " " + path.string();
  return PlatformError("Could not " + std::string(action) + object + ": " +
                       std::generic_category().message(code) + ".");
}

}  // namespace tolvane
