#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>

#include "tests/support/temporary_folder.h"
#include "universal/toolchain/local_toolchain.h"

namespace tolvane::support {

/// A machine on which exactly the named engines are installed. They are found, yet do nothing but
/// what a script says.
class InstalledEngines {
 public:
  InstalledEngines(std::initializer_list<std::string_view> engines) {
    for (const std::string_view engine : engines) {
      install(engine);
    }
  }

  void install(std::string_view engine, const std::string& script = "") const {
    std::filesystem::permissions(folder_.write(engine, script), std::filesystem::perms::owner_all);
  }
  void remove(std::string_view engine) const { std::filesystem::remove(folder_ / engine); }

  [[nodiscard]] const LocalToolchain& toolchain() const { return toolchain_; }

 private:
  TemporaryFolder folder_;
  LocalToolchain toolchain_{EngineLocations{{folder_.path()}, {}}};
};

}  // namespace tolvane::support
