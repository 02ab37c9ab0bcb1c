#include "platform/files/platform_error.h"

#include <system_error>

namespace tolvane {

PlatformError PlatformError::fromErrno(std::string_view call,
                                       const std::filesystem::path& path,
                                       int code) {
  return PlatformError(std::string(call) + " " + path.string() + ": " +
                       std::generic_category().message(code));
}

}  // namespace tolvane
