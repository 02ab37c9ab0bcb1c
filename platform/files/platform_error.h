#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tolvane {

/// A failure of the system or of a library, in its own words. Engines let it pass; the user is
/// shown what().
class PlatformError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  /// "Could not <action> <path>: <the system's text for the code>."
  /// @param action a verb: "open", "read", "write", ...
  [[nodiscard]] static PlatformError fromErrno(std::string_view action,
                                               const std::filesystem::path& path,
                                               int code);
};

}  // namespace tolvane
