#pragma once

#include "bridge/program_results.h"

namespace tolvane {

/// Results of the desktop host: shown by the programs of the session, copied by the host itself,
/// which stays as long as the clipboard is asked for.
class DesktopResults final : public ResultActions {
 public:
  void reveal(const std::vector<Path>& files) override { programs_.reveal(files); }
  void open(const Path& file) override { programs_.open(file); }
  void copyText(const std::string& text) override;

 private:
  ProgramResults programs_;
};

}  // namespace tolvane
