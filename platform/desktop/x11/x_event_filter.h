#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>

namespace tolvane {

/// An event as the X server sent it; valid while it is being told.
struct XEvent {
  std::uint8_t type = 0;  ///< without the mark of events that other clients sent
  const void* bytes = nullptr;

  /// @tparam Layout XCB's structure for events of this type.
  template <typename Layout>
  [[nodiscard]] Layout as() const {
    Layout layout{};
    std::memcpy(&layout, bytes, sizeof layout);
    return layout;
  }
};

/// Sees every event of Qt's connection to the X server before Qt does, until destroyed. Main thread
/// only.
class XEventFilter {
 public:
  /// @param seen must not destroy this object.
  explicit XEventFilter(std::function<void(const XEvent& event)> seen);
  ~XEventFilter();
  XEventFilter(const XEventFilter&) = delete;
  XEventFilter& operator=(const XEventFilter&) = delete;

 private:
  class Filter;
  std::unique_ptr<Filter> filter_;
};

}  // namespace tolvane
