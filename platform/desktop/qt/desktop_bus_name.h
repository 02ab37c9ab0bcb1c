#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tolvane {

/// The one desktop host of a session: it owns a name on the session bus and is asked under it to
/// open files (org.freedesktop.Application). Main thread only.
class DesktopBusName {
 public:
  using Files = std::vector<std::filesystem::path>;
  struct Requests {
    std::function<void()> activate;   ///< without files
    std::function<void(Files)> open;  ///< at least one, absolute
  };

  DesktopBusName();
  /// Gives the name back.
  ~DesktopBusName();
  DesktopBusName(const DesktopBusName&) = delete;
  DesktopBusName& operator=(const DesktopBusName&) = delete;

  /// Without a session bus this process counts as the only one.
  /// @return false when another process has the name.
  [[nodiscard]] bool claim(Requests requests);

  /// Hands the request over to the process that has the name, and waits until it was taken.
  /// @param files empty: only asks it to show up.
  static void handOver(const Files& files);

 private:
  class Object;
  std::unique_ptr<Object> object_;
};

}  // namespace tolvane
