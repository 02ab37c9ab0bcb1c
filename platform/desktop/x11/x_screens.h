#pragma once

#include "platform/desktop/screens.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

class XScreens final : public Screens {
 public:
  /// @param server not owned; outlives this object.
  explicit XScreens(const XServer& server) : server_(server) {}

  [[nodiscard]] std::vector<Screen> all() const override;
  /// The one that holds the middle of the active window.
  [[nodiscard]] std::optional<Screen> main() const override;

 private:
  const XServer& server_;
};

}  // namespace tolvane
