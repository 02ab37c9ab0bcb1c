#pragma once

#include <exception>
#include <string>

namespace tolvane {

/// The one error that the engines raise: either a complete sentence for the user, or the fact that
/// the user cancelled. Errors of the platform are not wrapped; they pass through as PlatformError.
class ConversionFailure final : public std::exception {
 public:
  /// @param sentence shown as it stands; says what happened and, where there is one, the remedy.
  [[nodiscard]] static ConversionFailure message(std::string sentence);
  [[nodiscard]] static ConversionFailure cancelled();

  [[nodiscard]] bool isCancelled() const noexcept { return isCancelled_; }
  [[nodiscard]] const std::string& errorDescription() const noexcept { return description_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  ConversionFailure(std::string description, bool isCancelled);

  std::string description_;
  bool isCancelled_;
};

}  // namespace tolvane
