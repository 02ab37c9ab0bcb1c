#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tolvane {

/// A running application, as its active window shows it.
struct RunningApplication {
  /// fileManagerBundle for every file manager, also for its desktop; for another application
  /// whatever names it, or nothing.
  std::string bundleIdentifier;
  std::int64_t processIdentifier = 0;  ///< 0 when the window does not tell
  std::uint64_t window = 0;            ///< the adapter's own handle
  bool isThisProcess = false;

  friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

inline constexpr const char* fileManagerBundle = "com.apple.finder";

/// The application that has the keyboard focus. Main thread only.
class FrontApplication {
 public:
  FrontApplication() = default;
  virtual ~FrontApplication() = default;
  FrontApplication(const FrontApplication&) = delete;
  FrontApplication& operator=(const FrontApplication&) = delete;

  [[nodiscard]] virtual std::optional<RunningApplication> current() const = 0;
  /// @return whether the application has not terminated since.
  [[nodiscard]] virtual bool isRunning(const RunningApplication& application) const = 0;
  /// Gives it the focus back; does nothing when it cannot.
  virtual void activate(const RunningApplication& application) = 0;
};

}  // namespace tolvane
