#pragma once

#include <cstdint>
#include <functional>

#include "platform/desktop/x11/x_event_filter.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// What can be done with the parts of a window that are not opaque: nothing, show what lies behind,
/// or show it blurred.
enum class Blending { none, clear, blurred };

/// The compositing manager, which blends windows. It may come and go at any time. Main thread only.
class XCompositor {
 public:
  /// @param server not owned; outlives this object.
  explicit XCompositor(XServer& server);
  ~XCompositor() = default;
  XCompositor(const XCompositor&) = delete;
  XCompositor& operator=(const XCompositor&) = delete;

  /// The property by which a window asks for a blur; on the root it says that there is one to have.
  static constexpr const char* blurRegion = "_KDE_NET_WM_BLUR_BEHIND_REGION";

  [[nodiscard]] Blending blending() const;

  /// @param changed called when one has come or the last one has gone.
  void onChange(std::function<void()> changed) { changed_ = std::move(changed); }

 private:
  void seen(const XEvent& event);

  XServer& server_;
  XAtom selection_;
  std::uint8_t firstEvent_;  // of the extension; 0 without it
  bool isRunning_;
  std::function<void()> changed_;
  XEventFilter filter_;
};

}  // namespace tolvane
