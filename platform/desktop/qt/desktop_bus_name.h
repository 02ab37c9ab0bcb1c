#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/process/activation.h"

namespace tolvane {

/// The one desktop host of a session: it owns a name on the session bus and is asked under it to
/// open files (org.freedesktop.Application). Main thread only.
class DesktopBusName {
 public:
  using Files = std::vector<std::filesystem::path>;

  /// What the host is asked for.
  struct Request {
    /// Absolute, or addresses that are not local; also none. Absent: the host only shows up.
    std::optional<Files> files;
    Activation activation;
  };

  DesktopBusName();
  /// Gives the name back.
  ~DesktopBusName();
  DesktopBusName(const DesktopBusName&) = delete;
  DesktopBusName& operator=(const DesktopBusName&) = delete;

  /// Without a session bus this process counts as the only one.
  /// @param requested called for each request that comes in later.
  /// @return false when another process has the name.
  /// @throws PlatformError when the bus refuses the name.
  [[nodiscard]] bool claim(std::function<void(const Request&)> requested);

  /// Hands the request over to the process that has the name, and waits until it was taken.
  /// @throws PlatformError when it was not.
  static void handOver(const Request& request);

 private:
  class Object;
  std::unique_ptr<Object> object_;
};

}  // namespace tolvane
