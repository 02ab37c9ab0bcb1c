#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/geometry.h"

struct xcb_connection_t;

namespace tolvane {

using XWindow = std::uint32_t;
using XAtom = std::uint32_t;
using XTime = std::uint32_t;  ///< milliseconds of the server; wraps around

/// The X server: properties of windows and messages to the window manager. Main thread only; what
/// a window that has gone is asked is answered as if it had no properties.
class XServer {
 public:
  /// @throws PlatformError when Qt does not run on an X server.
  XServer();
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// To be asked before Qt is, which would abort.
  /// @throws PlatformError when there is no X server.
  static void requireReachable();

  /// Qt's own, so that requests stay in order with Qt's.
  [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
  [[nodiscard]] XWindow root() const { return root_; }
  [[nodiscard]] XAtom atom(const std::string& name) const;

  /// The members of a property of 32-bit format (numbers, atoms, windows).
  [[nodiscard]] std::vector<std::uint32_t> numbers(XWindow window, const char* name) const;
  /// The same of each of the windows, in the time of one question.
  [[nodiscard]] std::vector<std::vector<std::uint32_t>> numbersOfEach(
      const std::vector<XWindow>& windows, const char* property) const;
  /// The bytes of a property of 8-bit format.
  [[nodiscard]] std::string text(XWindow window, const char* name) const;
  /// Whether there is such a property, of any format.
  [[nodiscard]] bool hasProperty(XWindow window, const char* property) const;
  void setNumbers(XWindow window, const char* property, const std::vector<std::uint32_t>& numbers);
  void removeProperty(XWindow window, const char* property);

  /// Whether a Wayland desktop runs this server for its X programs: keys and buttons reach it only
  /// while a window of such a program has them.
  [[nodiscard]] bool isBelowWayland() const { return isBelowWayland_; }

  [[nodiscard]] XWindow activeWindow() const;
  [[nodiscard]] bool exists(XWindow window) const;
  /// The top-left corner in pixels of the root window, y downwards; nullopt when it has gone.
  [[nodiscard]] std::optional<Point> origin(XWindow window) const;
  /// In pixels; nullopt when the window has gone.
  [[nodiscard]] std::optional<Size> size(XWindow window) const;
  /// The windows under the pointer that take it, each inside the one before; the root is the first.
  [[nodiscard]] std::vector<XWindow> windowsUnderPointer() const;
  /// Whether a program plays the role that the selection stands for.
  [[nodiscard]] bool hasOwner(const char* selection) const;

  /// Sends the message about `window` that window managers listen for.
  void tellWindowManager(XWindow window,
                         const char* message,
                         const std::array<std::uint32_t, 5>& data);

  /// The server's time now, for a user's action that came without a time of its own.
  [[nodiscard]] XTime now() const;
  /// The time of the user's action that is being followed; now() unless another was set.
  [[nodiscard]] XTime userTime() const { return userTime_ ? *userTime_ : now(); }
  void setUserTime(std::optional<XTime> time) { userTime_ = time; }

 private:
  class Clock;

  xcb_connection_t* connection_;  // Qt's
  XWindow root_;
  mutable std::map<std::string, XAtom> atoms_;
  std::unique_ptr<Clock> clock_;
  std::optional<XTime> userTime_;
  bool isBelowWayland_;
};

}  // namespace tolvane
