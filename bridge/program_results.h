#pragma once

#include "desktop/desktop_services.h"

namespace tolvane {

/// Result actions by the programs of the session: its file manager over D-Bus, xdg-open, and
/// wl-copy or xclip. What is not installed does nothing.
class ProgramResults final : public ResultActions {
 public:
  void reveal(const std::vector<Path>& files) override;
  void open(const Path& file) override;
  void copyText(const std::string& text) override;
};

}  // namespace tolvane
